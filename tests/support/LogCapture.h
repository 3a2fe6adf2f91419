#pragma once

#include <QStringList>
#include <QVector>

#include <mutex>

/**
 * Records every log line while it lives and passes it on to the handler before it. One at a time; GUI thread makes and
 * destroys it, lines may come from any thread.
 */
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /** Lines of one type, in the order they came. */
    QStringList lines(QtMsgType type) const;

    /** True when a line of any type begins with this text. */
    bool hasLine(const QString &beginning) const;
    int count(const QString &beginning) const;
    void clear();

    /** Announces warnings or errors that begin with this text as part of the test. */
    void expect(const QString &beginning);

    /** Warnings and errors that nobody announced. */
    QStringList unannounced() const;

private:
    struct Line {
        QtMsgType type;
        QString text;
    };

    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text);

    mutable std::mutex m_mutex;
    QVector<Line> m_lines;
    QStringList m_expected;
    QtMessageHandler m_previous = nullptr;
};
