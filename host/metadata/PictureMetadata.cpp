#include "metadata/MetadataReaders.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <cmath>
#include <exception>
#include <exiv2/exiv2.hpp>
#include <lcms2.h>
#include <mutex>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(FileMetadata)
};

/** The library prepares itself once for all threads, and must not talk to the console. */
void prepare()
{
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::XmpParser::initialize();
    });
}

using Finder = Exiv2::ExifData::const_iterator (*)(const Exiv2::ExifData &);

QString text(const Exiv2::ExifData &exif, Finder find)
{
    const auto entry = find(exif);
    if (entry == exif.end())
        return {};
    const std::string printed = entry->print(&exif);
    const QString value = QString::fromUtf8(printed.data(), int(qstrnlen(printed.data(), uint(printed.size()))));
    // "(42)" is how an unknown number is printed.
    return value.startsWith(QLatin1Char('(')) ? QString() : value.trimmed();
}

double number(const Exiv2::ExifData &exif, Finder find)
{
    const auto entry = find(exif);
    return entry != exif.end() && entry->count() > 0 ? double(entry->toFloat()) : 0.0;
}

QString cameraOf(const Exiv2::ExifData &exif)
{
    const QString make = text(exif, &Exiv2::make);
    const QString model = text(exif, &Exiv2::model);
    // Most models begin with their maker.
    const QString firstWord = make.section(QLatin1Char(' '), 0, 0);
    const QString both = make + QLatin1Char(' ') + model;
    return model.startsWith(firstWord, Qt::CaseInsensitive) ? model : both.trimmed();
}

QString exposureOf(const Exiv2::ExifData &exif)
{
    QStringList parts;
    const QLocale locale;
    const double fTime = number(exif, &Exiv2::exposureTime);
    if (fTime > 0.0 && std::isfinite(fTime))
        parts.append(fTime < 0.4 ? Words::tr("1/%1 s").arg(std::lround(1.0 / fTime))
                                 : Words::tr("%1 s").arg(locale.toString(fTime, 'g', 3)));
    const double fAperture = number(exif, &Exiv2::fNumber);
    if (fAperture > 0.0 && std::isfinite(fAperture))
        parts.append(Words::tr("f/%1").arg(locale.toString(fAperture, 'g', 3)));
    const double fSensitivity = number(exif, &Exiv2::isoSpeed);
    if (fSensitivity >= 1.0 && std::isfinite(fSensitivity))
        parts.append(Words::tr("ISO %1").arg(std::lround(fSensitivity)));
    const double fLength = number(exif, &Exiv2::focalLength);
    if (fLength > 0.0 && std::isfinite(fLength))
        parts.append(Words::tr("%1 mm").arg(locale.toString(fLength, 'g', 4)));
    return parts.join(QStringLiteral("  "));
}

QDateTime takenAt(const Exiv2::ExifData &exif)
{
    for (const char *pKey : {"Exif.Photo.DateTimeOriginal", "Exif.Photo.DateTimeDigitized", "Exif.Image.DateTime"}) {
        const auto entry = exif.findKey(Exiv2::ExifKey(pKey));
        if (entry == exif.end())
            continue;
        const QDateTime time = QDateTime::fromString(QString::fromLatin1(entry->toString().c_str()),
                                                     QStringLiteral("yyyy:MM:dd HH:mm:ss"));
        if (time.isValid())
            return time;
    }
    return {};
}

bool isTurned(const Exiv2::ExifData &exif)
{
    const auto entry = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    return entry != exif.end() && entry->count() > 0 && entry->toLong() >= 5 && entry->toLong() <= 8;
}

QString profileOf(Exiv2::Image &image)
{
    if (image.iccProfileDefined()) {
        const Exiv2::DataBuf *pProfile = image.iccProfile();
        return colorProfileName(QByteArray(reinterpret_cast<const char *>(pProfile->pData_), int(pProfile->size_)));
    }
    const auto entry = image.exifData().findKey(Exiv2::ExifKey("Exif.Photo.ColorSpace"));
    const bool bStandard = entry != image.exifData().end() && entry->count() > 0 && entry->toLong() == 1;
    return bStandard ? QStringLiteral("sRGB") : QString();
}

} // namespace

QString colorProfileName(const QByteArray &profile)
{
    constexpr int k_nLongest = 256;
    const cmsHPROFILE handle = cmsOpenProfileFromMem(profile.constData(), cmsUInt32Number(profile.size()));
    if (handle == nullptr)
        return {};
    char name[k_nLongest] = {};
    cmsGetProfileInfoASCII(handle, cmsInfoDescription, "en", "US", name, k_nLongest);
    cmsCloseProfile(handle);
    return QString::fromLatin1(name).trimmed();
}

void readPictureMetadata(const QByteArray &native, FileMetadata *pMetadata)
{
    prepare();
    try {
        const auto pImage = Exiv2::ImageFactory::open(native.toStdString());
        pImage->readMetadata();
        const Exiv2::ExifData &exif = pImage->exifData();
        pMetadata->dimensions = QSize(int(pImage->pixelWidth()), int(pImage->pixelHeight()));
        if (isTurned(exif))
            pMetadata->dimensions.transpose();
        pMetadata->colorProfile = profileOf(*pImage);
        pMetadata->taken = takenAt(exif);
        pMetadata->camera = cameraOf(exif);
        pMetadata->lens = text(exif, &Exiv2::lensName);
        pMetadata->exposure = exposureOf(exif);
    } catch (const std::exception &) {
        // No picture, or a damaged one: what was read so far stays.
    }
}
