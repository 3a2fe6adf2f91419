#pragma once

#include "app/CommandLine.h"

#include <QTemporaryDir>

#include <memory>

class FileGridView;
class HostSession;

/**
 * The reference host as a user starts it, with the built modules and a library of its own, and what the user does in
 * its grid. One with a base module for a process: services that ended with a host do not start again. GUI thread.
 */
class HostUser {
public:
    /** Starts with this file or folder, with the modules of this folder, and with this library or a new one. */
    explicit HostUser(const QString &place, const QString &pluginFolder = QStringLiteral(PLUGINS_DIR),
                      const QString &library = QString());
    ~HostUser();
    Q_DISABLE_COPY(HostUser)

    HostSession &session() { return *m_pSession; }
    FileGridView *grid() const;
    void end();

    int fileCount() const;
    int row() const;
    QString nameAt(int nRow) const;
    QString currentName() const { return nameAt(row()); }

    /** Shows another folder; false when no file of it is listed in time. */
    bool showFolder(const QString &folder);

    // Each of these is false when it does not come about.
    bool select(const QString &name); ///< By a click in the grid.
    bool open(const QString &name);   ///< Selects it, presses Space and waits for the picture.
    bool returnToGrid();              ///< Leaves an open preview for the grid, which has the focus again.

private:
    QTemporaryDir m_folder;
    std::unique_ptr<HostSession> m_pSession;
};
