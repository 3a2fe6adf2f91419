#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <vector>

class HostSession;
class QWidget;

/**
 * Shows everything by itself: drives the real windows by key and mouse events, waits for what each step should bring
 * about, and keeps a numbered picture of it. Ends the program: 0, or 1 with a message where a step never came true.
 *
 * Owner: main. Thread: GUI thread only.
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

    void addSteps();
    void next();
    void check();
    bool savePicture(const QString &name) const;
    void fail(const QString &message);

    QWidget *preview() const;
    void pressKey(int nKey) const;

    HostSession *m_pSession;
    const QString m_folder;
    std::vector<Step> m_steps;
    size_t m_nStep = 0;
    QTimer m_poll;
    QElapsedTimer m_stepTime;
};
