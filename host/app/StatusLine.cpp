#include "app/StatusLine.h"

#include "app/ElidedLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QVariant>

namespace {

constexpr int k_nHeight = 28;

} // namespace

StatusLine::StatusLine(QWidget *pParent)
    : QWidget(pParent)
    , m_pText(new ElidedLabel(Qt::ElideRight, this))
    , m_pProgress(new QProgressBar(this))
    , m_pCounts(new QLabel(this))
{
    setObjectName(QStringLiteral("hostStatusLine"));
    setProperty("area", QStringLiteral("title"));
    setAttribute(Qt::WA_StyledBackground);
    setFixedHeight(k_nHeight);
    m_pText->setObjectName(QStringLiteral("hostStatusText"));
    m_pCounts->setObjectName(QStringLiteral("hostStatusCounts"));
    for (QLabel *pLabel : {static_cast<QLabel *>(m_pText), m_pCounts})
        pLabel->setProperty("role", QStringLiteral("secondary"));
    m_pProgress->setRange(0, 0);
    m_pProgress->setTextVisible(false);
    m_pProgress->setFixedSize(120, 4);
    m_pProgress->hide();
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(16, 0, 16, 0);
    pLayout->setSpacing(12);
    pLayout->addWidget(m_pText, 1);
    pLayout->addWidget(m_pProgress);
    pLayout->addWidget(m_pCounts);
}

void StatusLine::setCounts(int nFiles, int nSelected)
{
    QString text = nFiles == 1 ? tr("1 file") : tr("%1 files").arg(QLocale().toString(nFiles));
    if (nSelected > 1)
        text += QStringLiteral("  ·  ") + tr("%1 selected").arg(QLocale().toString(nSelected));
    m_pCounts->setText(text);
}

void StatusLine::setScanning(bool bScanning, int nFiles)
{
    m_bScanning = bScanning;
    m_message = bScanning ? tr("Looking for files… %1").arg(QLocale().toString(nFiles)) : QString();
    showProgress();
}

void StatusLine::setAnalysis(int nDone, int nTotal)
{
    m_nAnalysed = nDone;
    m_nToAnalyse = nTotal;
    m_analysisText = nTotal > 0
                         ? tr("Making pictures… %1 of %2").arg(QLocale().toString(nDone), QLocale().toString(nTotal))
                         : QString();
    showProgress();
}

void StatusLine::showProgress()
{
    // While files are looked for nobody knows how many there will be: the bar moves without an end.
    m_pProgress->setRange(0, m_bScanning ? 0 : qMax(1, m_nToAnalyse));
    m_pProgress->setValue(m_nAnalysed);
    m_pProgress->setVisible(m_bScanning || m_nToAnalyse > 0);
    showText();
}

void StatusLine::addProblem(const QString &message)
{
    // One that is met again is the one to show.
    m_problems.removeAll(message);
    m_problems.append(message);
    showText();
}

void StatusLine::removeProblem(const QString &message)
{
    m_problems.removeAll(message);
    showText();
}

void StatusLine::addScanProblem(const QString &message)
{
    m_scanProblems.append(message);
    showText();
}

void StatusLine::clearScanProblems()
{
    m_scanProblems.clear();
    showText();
}

void StatusLine::setMessage(const QString &message)
{
    m_message = message;
    showText();
}

void StatusLine::showText()
{
    const QStringList problems = m_problems + m_scanProblems;
    QString problem = problems.isEmpty() ? QString() : problems.last();
    if (problems.size() > 1)
        problem = tr("%1 (and %2 more)").arg(problem).arg(problems.size() - 1);
    const QString message = m_message.isEmpty() ? m_analysisText : m_message;
    m_pText->setFullText(message.isEmpty() ? problem : message, problems.join(QLatin1Char('\n')));
}
