#include "LogCapture.h"

#include <algorithm>
#include <atomic>

namespace {
std::atomic<LogCapture *> s_current{nullptr};

bool beginsWithAny(const QString &text, const QStringList &beginnings)
{
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [&text](const QString &beginning) { return text.startsWith(beginning); });
}
} // namespace

LogCapture::LogCapture()
{
    Q_ASSERT_X(!s_current, "LogCapture", "one at a time");
    s_current = this;
    m_previous = qInstallMessageHandler(&LogCapture::record);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
    s_current = nullptr;
}

QStringList LogCapture::lines(QtMsgType type) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QStringList result;
    for (const Line &line : m_lines) {
        if (line.type == type)
            result.append(line.text);
    }
    return result;
}

bool LogCapture::hasLine(const QString &beginning) const
{
    return count(beginning) > 0;
}

int LogCapture::count(const QString &beginning) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return int(std::count_if(m_lines.begin(), m_lines.end(),
                             [&beginning](const Line &line) { return line.text.startsWith(beginning); }));
}

void LogCapture::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_lines.clear();
}

void LogCapture::expect(const QString &beginning)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_expected.append(beginning);
}

QStringList LogCapture::unannounced() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QStringList result;
    for (const Line &line : m_lines) {
        const bool bad = line.type == QtWarningMsg || line.type == QtCriticalMsg;
        if (bad && !beginsWithAny(line.text, m_expected))
            result.append(line.text);
    }
    return result;
}

void LogCapture::record(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    LogCapture *log = s_current;
    if (log == nullptr)
        return;
    {
        const std::lock_guard<std::mutex> lock(log->m_mutex);
        log->m_lines.append({type, text});
    }
    if (log->m_previous != nullptr)
        log->m_previous(type, context, text);
}
