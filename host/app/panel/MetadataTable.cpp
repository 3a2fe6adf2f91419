#include "app/panel/MetadataTable.h"

#include <QCoreApplication>
#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QVariant>

MetadataTable::MetadataTable(QWidget *pParent)
    : QWidget(pParent)
    , m_pLayout(new QGridLayout(this))
{
    setObjectName(QStringLiteral("hostMetadata"));
    m_pLayout->setContentsMargins(0, 0, 0, 0);
    m_pLayout->setHorizontalSpacing(12);
    m_pLayout->setVerticalSpacing(6);
    m_pLayout->setColumnStretch(1, 1);
}

void MetadataTable::clear()
{
    while (QLayoutItem *pItem = m_pLayout->takeAt(0)) {
        delete pItem->widget();
        delete pItem;
    }
}

void MetadataTable::addLine(const QString &name, const QString &value)
{
    if (value.isEmpty())
        return;
    const int nRow = m_pLayout->rowCount();
    auto *pName = new QLabel(name, this);
    pName->setProperty("role", QStringLiteral("secondary"));
    auto *pValue = new QLabel(value, this);
    pValue->setProperty("role", QStringLiteral("value"));
    pValue->setTextFormat(Qt::PlainText);
    pValue->setWordWrap(true);
    pValue->setTextInteractionFlags(Qt::TextSelectableByMouse);
    pValue->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    m_pLayout->addWidget(pName, nRow, 0, Qt::AlignTop | Qt::AlignLeading);
    m_pLayout->addWidget(pValue, nRow, 1, Qt::AlignTop);
}

QString durationText(qint64 nMsec)
{
    const qint64 nSeconds = (nMsec + 500) / 1000;
    const QString minutes =
        QStringLiteral("%1:%2").arg(nSeconds / 60 % 60, nSeconds >= 3600 ? 2 : 1, 10, QLatin1Char('0'));
    const QString tail = minutes.arg(nSeconds % 60, 2, 10, QLatin1Char('0'));
    return nSeconds >= 3600 ? QStringLiteral("%1:%2").arg(nSeconds / 3600).arg(tail) : tail;
}

void MetadataTable::showFile(const FileRecord &record, const FileMetadata &metadata)
{
    clear();
    const QLocale locale;
    const FileRow &row = record.row();
    const auto time = [&locale](const QDateTime &when) {
        return when.isValid() ? locale.toString(when, QLocale::ShortFormat) : QString();
    };
    addLine(tr("Type"), record.suffix().toUpper());
    addLine(tr("Size"), locale.formattedDataSize(row.nSize));
    if (!metadata.dimensions.isEmpty()) {
        const double fMegapixels = double(metadata.dimensions.width()) * metadata.dimensions.height() / 1e6;
        const QString size = tr("%1 × %2").arg(metadata.dimensions.width()).arg(metadata.dimensions.height());
        addLine(tr("Dimensions"), fMegapixels >= 1.0 && metadata.nDurationMsec == 0
                                      ? tr("%1  (%2 MP)").arg(size, locale.toString(fMegapixels, 'f', 1))
                                      : size);
    }
    if (metadata.nDurationMsec > 0)
        addLine(tr("Duration"), durationText(metadata.nDurationMsec));
    addLine(tr("Title"), metadata.title);
    addLine(tr("Artist"), metadata.artist);
    addLine(tr("Album"), metadata.album);
    addLine(tr("Year"), metadata.year);
    addLine(tr("Genre"), metadata.genre);
    addLine(tr("Codec"), metadata.codec);
    if (metadata.fFramesPerSecond > 0.0)
        addLine(tr("Frame rate"), tr("%1 per second").arg(locale.toString(metadata.fFramesPerSecond, 'g', 4)));
    if (metadata.nBitsPerSecond > 0)
        addLine(tr("Bit rate"), tr("%1 kbit/s").arg(locale.toString((metadata.nBitsPerSecond + 500) / 1000)));
    addLine(tr("Channels"), metadata.channels);
    if (metadata.nSamplesPerSecond > 0)
        addLine(tr("Sample rate"), tr("%1 Hz").arg(locale.toString(metadata.nSamplesPerSecond)));
    addLine(tr("Taken"), time(metadata.taken));
    addLine(tr("Changed"), time(QDateTime::fromMSecsSinceEpoch(row.nModifiedMsec)));
    addLine(tr("Camera"), metadata.camera);
    addLine(tr("Lens"), metadata.lens);
    addLine(tr("Exposure"), metadata.exposure);
    addLine(tr("Colours"), metadata.colorProfile);
    addLine(tr("Folder"), QDir::toNativeSeparators(row.folder));
}
