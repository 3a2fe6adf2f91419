#pragma once

#include "LogCapture.h"
#include "TestFiles.h"
#include "TestTable.h"

#include <QApplication>
#include <QStandardPaths>
#include <QtTest>

#include <memory>

/**
 * Base of our test classes: every test function records the log in log() and fails when it leaves a warning or an error
 * behind that it did not announce with log().expect(…). Classes with an init() or cleanup() of their own override
 * these and call them.
 */
class LoggedTest : public QObject {
    Q_OBJECT

protected:
    LogCapture &log() { return *m_log; }

protected Q_SLOTS:
    virtual void init()
    {
        m_log.reset(); // one at a time
        m_log = std::make_unique<LogCapture>();
        // What platforms say of themselves: the offscreen one of window matters, Windows of windows smaller than its
        // frame and of menus that are not shown yet.
        for (const char *pBeginning : {"This plugin does not support ", "setGeometry: Unable to set geometry",
                                       "setMouseGrabEnabled: Not setting mouse grab"})
            m_log->expect(QLatin1String(pBeginning));
    }

    virtual void cleanup()
    {
        const QStringList unannounced = m_log->unannounced();
        m_log.reset();
        QVERIFY2(unannounced.isEmpty(),
                 qPrintable(QStringLiteral("unannounced log lines:\n") + unannounced.join(QLatin1Char('\n'))));
    }

private:
    std::unique_ptr<LogCapture> m_log;
};

#if defined(__SANITIZE_THREAD__)
void noteDelivery(); ///< That what was posted is there before it is delivered.

/** Delivers the events of all threads. */
class TestApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *pReceiver, QEvent *pEvent) override
    {
        noteDelivery();
        return QApplication::notify(pReceiver, pEvent);
    }
};
#else
using TestApplication = QApplication;
#endif

/** The main function of a test program with one test class. */
template <class Test>
int runTest(int argc, char **argv)
{
    // Dialogs that a test can answer, on every platform.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    TestApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    QApplication::setQuitOnLastWindowClosed(false);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

#define BIGIMGPREVIEW_TEST_MAIN(Test)                                                                                  \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        return runTest<Test>(argc, argv);                                                                              \
    }
