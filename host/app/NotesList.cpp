#include "app/NotesList.h"

#include "library/Library.h"
#include "theme/TSSkinSetting.h"

#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int k_nRowHeight = 28;
constexpr int k_nMostRows = 8;
constexpr int k_nBadgeSide = 18;
constexpr int k_nLongestLine = 200;
constexpr int k_nLongestTip = 1000;

QColor colorOf(quint32 nValue)
{
    return QColor(int(nValue & 0xFFU), int((nValue >> 8U) & 0xFFU), int((nValue >> 16U) & 0xFFU));
}

/** The number on a dot of the note's colour. */
QIcon badge(int nNumber, const QColor &color, double fRatio)
{
    QPixmap picture(QSize(k_nBadgeSide, k_nBadgeSide) * fRatio);
    picture.setDevicePixelRatio(fRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(QRectF(0.0, 0.0, k_nBadgeSide, k_nBadgeSide));
    QFont font;
    font.setPixelSize(nNumber > 99 ? 8 : 11);
    painter.setFont(font);
    painter.setPen(qGray(color.rgb()) > 110 ? Qt::black : Qt::white);
    painter.drawText(QRect(0, 0, k_nBadgeSide, k_nBadgeSide), Qt::AlignCenter, QString::number(nNumber));
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected); // as it is: a selection tints it, and the colour tells the note
    return icon;
}

} // namespace

NotesList::NotesList(Library *pLibrary, QWidget *pParent)
    : QListWidget(pParent)
    , m_pLibrary(pLibrary)
{
    setObjectName(QStringLiteral("hostNotes"));
    setAccessibleName(tr("Notes"));
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setIconSize(QSize(k_nBadgeSide, k_nBadgeSide));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    const auto activate = [this](const QListWidgetItem *pItem) {
        Q_EMIT signalNoteActivated(m_nFileId, row(pItem));
    };
    connect(this, &QListWidget::itemClicked, this, activate);
    connect(this, &QListWidget::itemActivated, this, activate);
    connect(m_pLibrary, &Library::signalRecords, this, &NotesList::takeRecords);
    connect(m_pLibrary, &Library::signalRemoved, this, &NotesList::refresh);
    connect(m_pLibrary, &Library::signalCleared, this, &NotesList::refresh);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &NotesList::applyTheme);
    applyTheme();
    refresh();
}

void NotesList::applyTheme()
{
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    setStyleSheet(QStringLiteral("#hostNotes{background:transparent;border:none;outline:none;color:%1;font-size:12px;}"
                                 "#hostNotes::item{height:%4px;border-radius:4px;padding-left:4px;}"
                                 "#hostNotes::item:hover{background:%2;}"
                                 "#hostNotes::item:selected{background:%3;color:%1;}")
                      .arg(pTheme->GetTextColor(0).name(), pTheme->GetHoverColor().name(),
                           pTheme->GetInputAndButtonColor().name())
                      .arg(k_nRowHeight));
}

void NotesList::setFile(qint64 nFileId)
{
    if (nFileId == m_nFileId)
        return;
    m_nFileId = nFileId;
    refresh();
}

void NotesList::takeRecords(const FileRecordList &records)
{
    const auto isMine = [this](const FileRecordPtr &pRecord) {
        return pRecord->fileId() == m_nFileId;
    };
    if (std::any_of(records.cbegin(), records.cend(), isMine))
        refresh();
}

void NotesList::refresh()
{
    const FileRecordPtr pRecord = m_pLibrary->record(m_nFileId);
    const QVector<NoteRecord> notes = pRecord != nullptr ? pRecord->notes() : QVector<NoteRecord>();
    const int nSelected = currentRow();
    clear();
    for (int i = 0; i < notes.size(); ++i) {
        // One line of it; what users wrote is no markup, in the tip neither.
        const QString line = notes.at(i).text.left(k_nLongestLine).simplified();
        auto *pItem = new QListWidgetItem(badge(i + 1, colorOf(notes.at(i).value), devicePixelRatioF()), line, this);
        pItem->setToolTip(QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>")
                              .arg(notes.at(i).text.left(k_nLongestTip).toHtmlEscaped()));
        pItem->setData(Qt::AccessibleTextRole, tr("Note %1: %2").arg(i + 1).arg(line));
    }
    if (nSelected >= 0 && nSelected < count())
        setCurrentRow(nSelected);
    setVisible(count() > 0);
    updateGeometry();
}

QSize NotesList::sizeHint() const
{
    return {QListWidget::sizeHint().width(), qMin(count(), k_nMostRows) * k_nRowHeight};
}

QSize NotesList::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}
