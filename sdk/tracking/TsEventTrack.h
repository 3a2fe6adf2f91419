#pragma once

#include <QHash>
#include <QObject>
#include <QString>

#if defined(BIGIMGPREVIEW_TRACKING_LIBRARY)
#define BIGIMGPREVIEW_TRACKING_EXPORT Q_DECL_EXPORT
#else
#define BIGIMGPREVIEW_TRACKING_EXPORT Q_DECL_IMPORT
#endif

/**
 * Counts which preview buttons are used. Off until the host switches it on; the counts stay in this process and are
 * sent nowhere. The host reads and keeps them where the user can see them.
 *
 * Owner: the library. Thread: GUI thread only.
 */
class BIGIMGPREVIEW_TRACKING_EXPORT TsEventTrack : public QObject {
    Q_OBJECT

public:
    /** The one tracker of the process. Never null; not to be deleted. */
    static TsEventTrack *GetInstance();

    /** Counts one click of the button with this label. Nothing happens while tracking is off or for an empty label. */
    void PreviewBtnClick(const QString &label);

    /** Switches counting on or off; switching off keeps the counts. */
    void SetEnabled(bool bEnabled);

    /** True while clicks are counted; false at start. */
    bool IsEnabled() const;

    /** Clicks by label since the start, with the counts that were restored. */
    QHash<QString, int> GetCounts() const;

    /** Continues from earlier counts, for example those of the last session. */
    void RestoreCounts(const QHash<QString, int> &counts);

    /** Forgets every count. */
    void Clear();

Q_SIGNALS:
    /** A click was counted; nCount is the label's new count. */
    void signalCounted(const QString &label, int nCount);

private:
    TsEventTrack() = default;
    ~TsEventTrack() override = default;

    bool m_bEnabled = false;
    QHash<QString, int> m_counts;
};
