#pragma once

#include "services/basemodule/cache/DecodeGate.h"
#include "services/basemodule/decode/PictureReader.h"

#include <QSet>
#include <QStringList>

#include <functional>
#include <list>
#include <memory>
#include <vector>

class QThread;

namespace basemodule {

/**
 * Decodes the files that will probably be looked at next, one after the other on one background thread, into a
 * byte-bounded cache of ready bitmaps. Keeps the picture shown last as well, so that a step back costs as little.
 *
 * Owner: the base module. Thread: every operation may be called from any thread; none but `take` waits.
 */
class DecodeAhead {
public:
    /** Maps a file named by the host to the file that previews will ask the decoder for; touches the disk. */
    using Resolve = std::function<QString(const QString &path)>;

    /** Documents are decoded ahead where the converter, which may be null, has converted them before. */
    DecodeAhead(DecodeGate &gate, Resolve resolve, DocumentConverter *pDocuments = nullptr);
    ~DecodeAhead();

    void setFiles(const QStringList &paths);
    void setBudget(qint64 nBytes);

    /** The picture of a file in this state; waits for a decode of it that is under way. Null when there is none. */
    DecodedPicture take(const FileKey &key);

    /** Keeps the picture that was decoded for the screen, if the budget has room for it. */
    void keepShown(const FileKey &key, const DecodedPicture &picture);

    /** Cancels and joins; nothing is decoded ahead afterwards. */
    void shutdown();

    /** Bytes of the pictures held now. */
    qint64 heldBytes() const;
    /** Whether a picture of this state is held now. */
    bool holds(const FileKey &key) const;

private:
    class Control;
    struct Entry {
        QString name; ///< As the host named it; empty for the picture shown last.
        FileKey key;
        DecodedPicture picture;
    };

    void run();
    /** The next name to work on; empty when all is done. Call with the lock held. */
    QString nextName() const;
    void decode(const QString &name);
    bool reserve(qint64 nBytes);
    int rankOf(const QString &name) const;
    qint64 heldBytesLocked() const;
    bool isDroppable(const Entry &entry) const;
    Entry *find(const FileKey &key);
    void drop(std::list<Entry>::iterator it);
    void startThread();

    DecodeGate &m_gate;
    const Resolve m_resolve;
    DocumentConverter *const m_pDocuments;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::unique_ptr<QThread> m_thread;
    QStringList m_names;
    QSet<QString> m_doneNames;
    std::list<Entry> m_entries;
    std::vector<DecodedPicture> m_dropped; ///< Freed by the worker: giving memory back takes time, too.
    FileKey m_shownKey;
    QString m_currentName;
    FileKey m_currentKey;
    std::atomic_bool m_bCancelCurrent{false};
    std::atomic_bool m_bUrgent{false};
    bool m_bStop = false;
    qint64 m_nBudget = qint64(512) << 20;
};

} // namespace basemodule
