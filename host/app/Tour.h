#pragma once

#include "library/FileRecord.h"

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <vector>

class HostSession;
class QAbstractButton;
class QStackedWidget;
class QWidget;

/**
 * Shows everything by itself: drives the real windows by key and mouse events, waits for what each step should bring
 * about, and keeps a numbered picture of it. Ends the program: 0, or 1 with a message where a step never came true.
 *
 * Knows the preview only by the names of its widgets, as it would any other program's. Owner: main. Thread: GUI
 * thread only.
 */
class Tour : public QObject {
    Q_OBJECT

public:
    Tour(HostSession *pSession, const QString &folder);
    ~Tour() override;

    void start();

private:
    /** One step: what is done, and what must then be true before its picture is taken. */
    struct Step {
        QString name;
        std::function<void()> act;
        std::function<bool()> done;
    };

    void addGridSteps();
    void addPreviewSteps(const FileRecordPtr &pPicture);
    void addFileStep(const QString &name, const FileRecordPtr &pRecord, const std::function<bool()> &done);
    void addFullPreviewSteps(const FileRecordPtr &pPicture);
    void addPanelSteps(const FileRecordPtr &pPicture);
    void addClosingSteps(const FileRecordPtr &pPicture);
    void addFilmSteps();

    void next();
    void check();
    void finish(int nExitCode, const QString &message);

    QWidget *preview() const;
    QStackedWidget *hub() const;
    QAbstractButton *toolButton(int nButton) const;
    QWidget *childOfClass(const char *className) const;
    bool isShown(const FileRecordPtr &pRecord) const;
    bool isStill() const;
    bool isChanged() const;
    QImage screen() const;

    void pressKey(int nKey) const;
    void selectByMouse(const FileRecordPtr &pRecord) const;
    void turnWheel() const;
    void type(const char *widgetName, const QString &text) const;
    FileRecordPtr findRecord(const std::function<bool(const FileRecord &)> &wanted) const;
    FileRecordPtr largestPicture() const;

    HostSession *m_pSession;
    const QString m_folder;
    std::vector<Step> m_steps;
    size_t m_nStep = 0;
    int m_nPictures = 0;
    int m_nStillPolls = 0;
    QImage m_before;     ///< The screen when the step began.
    QImage m_lastScreen; ///< The screen at the last look.
    QTimer m_poll;
    QElapsedTimer m_stepTime;
};
