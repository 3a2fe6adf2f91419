#pragma once

#include "actions/FileActions.h"
#include "library/LibraryDataSource.h"

class IHostAnalysis;

/**
 * The library as previews see it, with everything that can be done with its files. Clears away, when made, what an
 * earlier run that was killed left unfinished.
 *
 * Owner: shared between host and preview. Thread: GUI thread only.
 */
class HostDataSource final : public LibraryDataSource {
public:
    /** The library must have been opened. */
    explicit HostDataSource(Library *pLibrary);
    ~HostDataSource() override;

    /** Lets preview pictures be made of everything that the base module reads; null: of what Qt reads. */
    void setAnalysis(IHostAnalysis *pAnalysis);

    /** The file that the user looks at: whether it may be deleted is what isDeletingBlocked tells. */
    void setCurrentFile(qint64 nFileId) { m_nCurrentId = nFileId; }

    bool isDeletingBlocked() override;
    QSharedPointer<IExportAction> exportAction() override;
    QSharedPointer<IRemoveAction> removeAction() override;
    QSharedPointer<IRecycleAction> recycleAction() override;
    QSharedPointer<IFileAction> fileAction() override;

    ActionRunner *runner() { return m_pRunner.get(); }

    /**
     * Takes the files of a pack into a new folder, named after the pack, below this one. The id of the action; `done`
     * is told the new folder, or what went wrong.
     */
    using ImportHandler = std::function<void(const QString &folder, int nFiles, const QString &error)>;
    qint64 importPack(const QString &packPath, const QString &parentFolder,
                      const std::function<void(const ActionProgress &)> &onProgress, const ImportHandler &done);

    /** Ends what runs and waits for it; actions are refused afterwards. */
    void shutdown();

private:
    std::unique_ptr<ActionRunner> m_pRunner;
    const std::shared_ptr<ActionDesk> m_pDesk;
    qint64 m_nCurrentId = 0;
};
