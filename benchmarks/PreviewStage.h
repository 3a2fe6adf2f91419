#pragma once

#include "FakeHost.h"
#include "basemodule/IHostAnalysis.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPluginLoader>
#include <QStringList>
#include <QWidget>

class IBigImgPreviewPlugin;
class IPreviewSpaceDialog;
class QGraphicsItem;
class QGraphicsView;

/** An application that knows the longest time its GUI thread was busy with one event and all that followed from it. */
class TimedApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *pReceiver, QEvent *pEvent) override;
    /** Milliseconds since the last call of this. */
    double takeLongestBusy();

private:
    int m_nDepth = 0;
    double m_fLongest = 0.0;
};

/**
 * The built preview plug-in and the reference host's real decoder on a list of files, in a real quick preview of
 * 1920 x 1080. Everything is reached as a host or a user reaches it: interfaces, keys, the mouse, what is painted.
 */
class PreviewStage : public QObject {
    Q_OBJECT

public:
    /** With these notes on each file. */
    explicit PreviewStage(const QStringList &paths, const QVector<NoteRecord> &notes = {});
    ~PreviewStage() override;

    bool isReady() const { return m_pDialog != nullptr; }
    IHostAnalysis *analysis() const { return m_pAnalysis; }
    IPreviewSpaceDialog *dialog() const { return m_pDialog; }
    QGraphicsView *view() const;
    /** The picture on the page; null while there is none. */
    QGraphicsItem *picture() const;

    /** Shows the current file and waits for it; milliseconds until its pixels were painted. */
    double open();
    /** Presses a key and waits until the next file's pixels were painted. */
    double step(Qt::Key key);
    /**
     * Milliseconds that the GUI thread works for the next paint of the view that the work leads to: what a frame costs
     * on one core, whatever else the machine does meanwhile.
     */
    template <class Work>
    double timePaint(Work work)
    {
        m_bPainted = false;
        const double fBegin = threadMsec();
        work();
        waitForPaint();
        return threadMsec() - fBegin;
    }

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    static double threadMsec();
    bool isShowing() const;
    double waitForPicture(const QElapsedTimer &timer);
    void waitForPaint();

    FakeHost m_host;
    QWidget m_window;
    QPluginLoader m_previewLoader;
    QPluginLoader m_baseLoader;
    IBigImgPreviewPlugin *m_pPlugin = nullptr;
    IHostAnalysis *m_pAnalysis = nullptr;
    IPreviewSpaceDialog *m_pDialog = nullptr;
    bool m_bPainted = false;
};
