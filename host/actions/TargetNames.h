#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

/** Names for files in a folder that already holds some. All names are native bytes. */
namespace TargetNames {

constexpr int k_nLongestName = 255; ///< Bytes.

/** "name (n).ext"; a name that is numbered already counts on. Shortened, between characters, to the length allowed. */
QByteArray numbered(const QByteArray &name, int nNumber, int nLongest = k_nLongestName);

/**
 * A name that every system takes: without control characters and < > : " / \ | ? *, not ending in a dot or space, no
 * device, valid text.
 */
QByteArray portable(const QByteArray &name);

/** Whether some system takes this name for a device, such as "con" or "LPT1.txt". */
bool isDevice(const QString &name);

/**
 * Renames a file between folders without ever replacing another one; 0 or an errno, EEXIST where the name is taken.
 * Works on file systems that cannot do both in one step, too.
 */
int renameWithoutReplacing(int nFromFolder, const QByteArray &from, int nToFolder, const QByteArray &to);

/** Gives finished files their names in one folder and remembers where counting goes on. Any thread, one at a time. */
class Publisher {
public:
    explicit Publisher(int nFolder)
        : m_nFolder(nFolder)
    {
    }

    /** Renames to the wanted name or the first free numbered one, told in *pName; 0 or an errno. */
    int publish(int nFromFolder, const QByteArray &from, const QByteArray &wanted, QByteArray *pName);

private:
    const int m_nFolder;
    QHash<QByteArray, int> m_lastNumbers;
};

} // namespace TargetNames
