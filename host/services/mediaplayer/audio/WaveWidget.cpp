#include "services/mediaplayer/audio/WaveWidget.h"

#include "theme/TSSkinSetting.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kBarWidth = 2;
constexpr int kBarStep = 3;
// The player is asked at most this often while the mouse drags.
constexpr int kSeekEveryMsec = 80;

} // namespace

WaveWidget::WaveWidget(QWidget *pParent)
    : QWidget(pParent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setMinimumSize(60, 34);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(tr("Waveform"));
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, QOverload<>::of(&QWidget::update));
}

QSize WaveWidget::sizeHint() const
{
    return {320, 48};
}

void WaveWidget::setPeaks(const media::Peaks &peaks)
{
    m_peaks = peaks;
    update();
}

void WaveWidget::setDuration(qint64 nMsec)
{
    m_nDurationMsec = qMax<qint64>(0, nMsec);
    update();
}

void WaveWidget::setPosition(qint64 nMsec)
{
    if (!m_bDragged)
        moveMark(nMsec);
}

qint64 WaveWidget::durationMsec() const
{
    return m_nDurationMsec > 0 ? m_nDurationMsec : m_peaks.nDurationMsec;
}

double WaveWidget::markAt(qint64 nMsec) const
{
    const qint64 nDuration = durationMsec();
    return nMsec >= 0 && nDuration > 0 ? qBound(0.0, double(nMsec) / double(nDuration), 1.0) * width() : 0.0;
}

qint64 WaveWidget::timeAt(int nX) const
{
    return qint64(qBound(0.0, double(nX) / qMax(1, width()), 1.0) * double(durationMsec()));
}

void WaveWidget::moveMark(qint64 nMsec)
{
    if (nMsec == m_nPositionMsec)
        return;
    const double fOld = markAt(m_nPositionMsec);
    const double fNew = markAt(nMsec);
    m_nPositionMsec = nMsec;
    // Only what changed colour is painted again.
    const int nLeft = int(std::floor(qMin(fOld, fNew))) - kBarStep;
    const int nRight = int(std::ceil(qMax(fOld, fNew))) + kBarStep;
    update(nLeft, 0, nRight - nLeft, height());
}

int WaveWidget::levelBetween(double fFromMsec, double fToMsec) const
{
    if (m_peaks.isNull())
        return 0;
    const int nCount = m_peaks.levels.size();
    const int nFrom = int(qBound(0.0, fFromMsec / m_peaks.fStretchMsec, double(nCount)));
    const int nTo = int(qBound(0.0, std::ceil(fToMsec / m_peaks.fStretchMsec), double(nCount)));
    if (nFrom >= nTo)
        return 0;
    return *std::max_element(m_peaks.levels.constBegin() + nFrom, m_peaks.levels.constBegin() + nTo);
}

void WaveWidget::paintEvent(QPaintEvent *pEvent)
{
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    QColor rest = pTheme->GetSliderColor();
    rest.setAlphaF(0.45);
    QColor unread = rest;
    unread.setAlphaF(0.2);
    const QColor played = pTheme->GetHighlightColor();
    const double fMark = markAt(m_nPositionMsec);
    const double fMsecPerPixel = double(durationMsec()) / qMax(1, width());
    const double fReadTo = m_peaks.bComplete
                               ? double(width())
                               : (fMsecPerPixel > 0.0 ? double(m_peaks.nDurationMsec) / fMsecPerPixel : 0.0);
    QPainter painter(this);
    // Bars stand on device pixels: nothing to be smoothed.
    const double fRatio = devicePixelRatioF();
    const auto aligned = [fRatio](double fValue) {
        return std::round(fValue * fRatio) / fRatio;
    };
    const int nFirst = pEvent->rect().left() / kBarStep;
    const int nLast = pEvent->rect().right() / kBarStep;
    for (int i = nFirst; i <= nLast; ++i) {
        const int nX = i * kBarStep;
        const int nLevel = levelBetween(nX * fMsecPerPixel, (nX + kBarStep) * fMsecPerPixel);
        const double fHeight = qMax(1.0, double(nLevel) / 255.0 * (height() - 4));
        const QColor &color = nX < fMark ? played : (nX <= fReadTo ? rest : unread);
        painter.fillRect(QRectF(aligned(nX), aligned((height() - fHeight) / 2.0), aligned(kBarWidth), aligned(fHeight)),
                         color);
    }
    if (m_nPositionMsec >= 0)
        painter.fillRect(QRectF(aligned(fMark) - 0.5, 0, 1, height()), played);
}

void WaveWidget::dragTo(int nX, bool bFinal)
{
    if (durationMsec() <= 0)
        return;
    const qint64 nMsec = timeAt(nX);
    moveMark(nMsec);
    const bool bTooSoon = !bFinal && m_sinceSeek.isValid() && m_sinceSeek.elapsed() < kSeekEveryMsec;
    if (nMsec == m_nSoughtMsec || bTooSoon)
        return;
    m_nSoughtMsec = nMsec;
    m_sinceSeek.start();
    Q_EMIT signal_seekPlay(nMsec);
}

void WaveWidget::mousePressEvent(QMouseEvent *pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    m_bDragged = true;
    m_nSoughtMsec = -1;
    dragTo(pEvent->x(), true);
}

void WaveWidget::mouseMoveEvent(QMouseEvent *pEvent)
{
    if (m_bDragged)
        dragTo(pEvent->x(), false);
}

void WaveWidget::mouseReleaseEvent(QMouseEvent *pEvent)
{
    if (!m_bDragged || pEvent->button() != Qt::LeftButton)
        return;
    dragTo(pEvent->x(), true);
    m_bDragged = false;
}
