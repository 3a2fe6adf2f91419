#include "app/panel/LabelEditor.h"

#include "app/panel/FlowLayout.h"
#include "app/panel/LabelChip.h"
#include "theme/TSSkinSetting.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QStringListModel>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int k_nLongestName = 80;

} // namespace

LabelEditor::LabelEditor(QWidget *pParent)
    : QWidget(pParent)
    , m_pChips(new FlowLayout(6))
    , m_pInput(new QLineEdit(this))
    , m_pCompleter(new QCompleter(this))
    , m_pNames(new QStringListModel(this))
{
    m_pInput->setObjectName(QStringLiteral("hostLabelInput"));
    m_pInput->setPlaceholderText(tr("Add a label"));
    m_pInput->setAccessibleName(tr("Add a label"));
    m_pInput->setMaxLength(k_nLongestName);
    m_pCompleter->setModel(m_pNames);
    m_pCompleter->setCaseSensitivity(Qt::CaseInsensitive);
    m_pCompleter->setFilterMode(Qt::MatchContains);
    m_pInput->setCompleter(m_pCompleter);
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(8);
    pLayout->addLayout(m_pChips);
    pLayout->addWidget(m_pInput);
    connect(m_pInput, &QLineEdit::returnPressed, this, &LabelEditor::addTyped);
    // After the completer has put its text into the line.
    connect(m_pCompleter, QOverload<const QString &>::of(&QCompleter::activated), this, &LabelEditor::addTyped,
            Qt::QueuedConnection);
}

void LabelEditor::addTyped()
{
    const QString name = m_pInput->text().simplified();
    if (name.isEmpty())
        return;
    m_pInput->clear();
    const bool bThere = std::any_of(m_labels.cbegin(), m_labels.cend(), [&name](const TagRecordPtr &pLabel) {
        return pLabel->name.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (bThere)
        return;
    // The spelling there is wins over the one typed.
    const auto known = std::find_if(m_known.cbegin(), m_known.cend(), [&name](const LabelRecord &label) {
        return label.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    Q_EMIT signalAdd(known != m_known.cend() ? known->name : name);
}

void LabelEditor::setKnownLabels(const QVector<LabelRecord> &labels)
{
    m_known = labels;
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(m_pCompleter->popup(), QStringLiteral("host"));
    showChips();
}

void LabelEditor::setLabels(const TagRecordList &labels)
{
    m_labels = labels;
    showChips();
}

void LabelEditor::showChips()
{
    // Later, not now: a chip may be the one that was just clicked.
    while (QLayoutItem *pItem = m_pChips->takeAt(0)) {
        pItem->widget()->hide();
        pItem->widget()->deleteLater();
        delete pItem;
    }
    QStringList others;
    for (const LabelRecord &label : qAsConst(m_known)) {
        const bool bShown = std::any_of(m_labels.cbegin(), m_labels.cend(),
                                        [&label](const TagRecordPtr &pLabel) { return pLabel->id == label.id; });
        if (!bShown) {
            others.append(label.name);
            continue;
        }
        auto *pChip = new LabelChip(label, this);
        m_pChips->addWidget(pChip);
        pChip->show();
        connect(pChip, &LabelChip::signalRemove, this, &LabelEditor::signalRemove);
        connect(pChip, &LabelChip::signalColor, this, &LabelEditor::signalColor);
    }
    m_pNames->setStringList(others);
    m_pChips->invalidate();
    updateGeometry();
}
