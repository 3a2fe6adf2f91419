#include "tracking/TsEventTrack.h"

TsEventTrack *TsEventTrack::GetInstance()
{
    static TsEventTrack instance;
    return &instance;
}

void TsEventTrack::PreviewBtnClick(const QString &label)
{
    if (!m_bEnabled || label.isEmpty())
        return;
    const int nCount = ++m_counts[label];
    Q_EMIT signalCounted(label, nCount);
}

void TsEventTrack::SetEnabled(bool bEnabled)
{
    m_bEnabled = bEnabled;
}

bool TsEventTrack::IsEnabled() const
{
    return m_bEnabled;
}

QHash<QString, int> TsEventTrack::GetCounts() const
{
    return m_counts;
}

void TsEventTrack::RestoreCounts(const QHash<QString, int> &counts)
{
    m_counts = counts;
}

void TsEventTrack::Clear()
{
    m_counts.clear();
}
