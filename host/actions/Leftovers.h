#pragma once

#include "actions/UniqueFd.h"

#include <QByteArray>
#include <QString>

#include <memory>

/** What all names of unfinished files begin with. */
QByteArray leftoverPrefix();

/**
 * One unfinished file or folder, written down so that a later start of the program removes it should this one be
 * killed. Removes it itself when it goes and it was not released. Any thread.
 */
class Leftover {
public:
    ~Leftover();
    Q_DISABLE_COPY(Leftover)

    /** Native path, in the folder that was asked for; not yet existing when handed out. */
    const QByteArray &path() const { return m_path; }
    QByteArray name() const { return m_path.mid(m_path.lastIndexOf('/') + 1); }

private:
    friend class Leftovers;
    Leftover() = default;

    QByteArray m_path;
    QByteArray m_entry;
    UniqueFd m_lock; ///< Held for as long as the entry's writer lives: tells the dead from the living.
};

/**
 * The journal of unfinished files of all running instances, one small file each, in a folder of its own.
 *
 * Owner: HostDataSource. Thread: any; touches the disk.
 */
class Leftovers {
public:
    explicit Leftovers(const QString &journalFolder);

    /** A new name in this folder (native, without a trailing slash), written down; works without a journal, too. */
    std::unique_ptr<Leftover> make(const QByteArray &folder) const;

    /** Removes what instances that are gone left behind. Entries for drives that are away stay for a month. */
    void cleanUp() const;

private:
    const QByteArray m_folder;
};

/** Removes a file, or a folder with everything in it; links are removed, not followed. */
bool removeTree(const QByteArray &path);
