#pragma once

#include "actions/FileActionType.h"
#include "interfaces/data/IPreviewDataSource.h"
#include "interfaces/data/IResponseInfo.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QQueue>
#include <QSharedPointer>
#include <QString>
#include <QVector>

#include <array>
#include <functional>

class HostRequest;
class QKeySequence;
class QWidget;
class TSCustomMenu;
class TsProgressDialog;

/**
 * What the file menu of one type widget does: the small actions at once, the long ones by a request to the host, its
 * progress, its result and the user's cancellation. What is asked for concerns the file that was shown when it was
 * asked.
 *
 * A menu or a file dialog that is open may outlive this object and its widget.
 *
 * Owner: the type widget. Thread: GUI thread.
 */
class FileActionController : public QObject {
    Q_OBJECT

public:
    FileActionController(const FileActionType &type, FileActionHooks hooks, QWidget *pWidget);
    ~FileActionController() override;

    /** Runs the menu at the mouse until it is closed; the widget may be gone then. */
    void showMenu(const QKeySequence &recycleKey);

    void defaultOpen();
    void checkFilePath();
    void exportToPackage() { exportFile(true); }
    void exportToComputer() { exportFile(false); }
    void copyFile();
    void copyFilePath();
    void copyTag();
    void pasteTag();
    void deleteComplete();
    void removeToRecycle();

    /** Lets the user choose a picture from disk, cuts it to a square and makes it the preview picture. */
    void chooseCover();
    /** Makes the picture in this file the preview picture of the current file. */
    void setCover(const QString &picturePath);
    /** The same with a picture that is on the screen. */
    void setCover(const QImage &picture);

private:
    enum Kind { ExportKind, RemoveKind, RecycleKind, CoverKind, KindCount };

    /** The file that was shown when something was asked for, in the library of that moment. */
    struct Target {
        qint64 nFileId = 0;
        QWeakPointer<IPreviewDataSource> pSource;
    };

    struct CoverJob {
        Target target;
        QString path;
        bool bSquare = false;
        QImage picture; ///< Instead of the path.
    };

    static Target currentTarget();
    /** The library of the target, as long as it is the one in use. */
    static QSharedPointer<IPreviewDataSource> sourceOf(const Target &target);
    QString text(const char *pSource) const;

    void exportFile(bool bPackage);
    QString chooseExportPath(bool bPackage);
    template <class Action, class Progress, class Result, class Send>
    void runRequest(Kind kind, const QSharedPointer<Action> &pAction, Progress pProgress, Result pResult,
                    const Send &send);
    void begin(Kind kind, const std::function<qint64()> &send);
    /** The library to remove the file from; null where that is not to be. */
    QSharedPointer<IPreviewDataSource> prepareRemoval(const Target &target);

    void addCoverJob(const CoverJob &job);
    void startCoverJob();
    void sendCover(const CoverJob &job, const QString &picturePath);

    void handleProgress(Kind kind, double fProgress, int nTotal, int nAlready);
    void handleResult(Kind kind, const ResponseInfoPtr &pInfo);
    void handleExported(const ResponseInfoPtr &pInfo, bool bSuccess);
    void handleCoverSet(bool bSuccess);
    void closeDialog(Kind kind);
    void cancel(Kind kind);
    void showNotice(const char *pTitle, const char *pText);

    FileActionType m_type;
    FileActionHooks m_hooks;
    QWidget *m_pWidget;
    std::array<HostRequest *, KindCount> m_requests{};
    std::array<QPointer<TsProgressDialog>, KindCount> m_dialogs;
    // One for all kinds, and a failed export leaves it as it is: the host may be asked to cancel what is over.
    bool m_bFinished = false;
    QString m_exportPath;
    bool m_bExportPackage = false;
    qint64 m_nCoverFileId = -1;
    QQueue<CoverJob> m_coverJobs;
    QVector<QPointer<TSCustomMenu>> m_openMenus;
};
