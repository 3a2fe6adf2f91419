#include "actions/TargetNames.h"

#include <QFile>
#include <QRegularExpression>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

/** Shortened to this many bytes without cutting a character. */
QByteArray shortened(QByteArray text, int nBytes)
{
    if (text.size() <= nBytes)
        return text;
    while (nBytes > 0 && (uchar(text.at(nBytes)) & 0xC0) == 0x80)
        --nBytes;
    text.truncate(nBytes);
    return text;
}

/** Where the suffix begins, its dot included; the length of the name where there is none. */
int suffixStart(const QByteArray &name)
{
    constexpr int k_nLongestSuffix = 16;
    const int nDot = name.lastIndexOf('.');
    return nDot > 0 && name.size() - nDot <= k_nLongestSuffix ? nDot : name.size();
}

} // namespace

QByteArray TargetNames::numbered(const QByteArray &name, int nNumber, int nLongest)
{
    const int nSuffix = suffixStart(name);
    const QByteArray suffix = name.mid(nSuffix);
    QByteArray stem = name.left(nSuffix);
    const int nOpen = stem.lastIndexOf(" (");
    if (nOpen > 0 && stem.endsWith(')')) {
        bool bNumber = false;
        const int nOld = stem.mid(nOpen + 2, stem.size() - nOpen - 3).toInt(&bNumber);
        if (bNumber && nOld > 0 && nOld < 1000000) {
            stem.truncate(nOpen);
            nNumber += nOld;
        }
    }
    const QByteArray end = " (" + QByteArray::number(nNumber) + ')' + suffix;
    return shortened(stem, nLongest - end.size()) + end;
}

bool TargetNames::isDevice(const QString &name)
{
    static const QRegularExpression device(
        QStringLiteral("^(con|prn|aux|nul|com[0-9¹²³]|lpt[0-9¹²³]|conin\\$|conout\\$)\\s*(\\.|:|$)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return device.match(name).hasMatch();
}

QByteArray TargetNames::portable(const QByteArray &name)
{
    QString text = QString::fromUtf8(name);
    for (QChar &letter : text) {
        if (letter < QLatin1Char(' ') || letter == QChar(0x7F) || letter == QChar::ReplacementCharacter ||
            QStringLiteral("<>:\"/\\|?*").contains(letter))
            letter = QLatin1Char('_');
    }
    while (text.endsWith(QLatin1Char('.')) || text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    if (text.isEmpty() || isDevice(text))
        text.prepend(QLatin1Char('_'));
    return shortened(text.toUtf8(), k_nLongestName);
}

int TargetNames::renameWithoutReplacing(int nFromFolder, const QByteArray &from, int nToFolder, const QByteArray &to)
{
    if (::renameat2(nFromFolder, from.constData(), nToFolder, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    if (::linkat(nFromFolder, from.constData(), nToFolder, to.constData(), 0) == 0) {
        ::unlinkat(nFromFolder, from.constData(), 0);
        return 0;
    }
    if (errno == EEXIST)
        return EEXIST;
    // Neither is known to this file system: the rest is a look before the step.
    if (::faccessat(nToFolder, to.constData(), F_OK, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return ::renameat(nFromFolder, from.constData(), nToFolder, to.constData()) == 0 ? 0 : errno;
}

int TargetNames::Publisher::publish(int nFromFolder, const QByteArray &from, const QByteArray &wanted,
                                    QByteArray *pName)
{
    constexpr int k_nMostNumbers = 1000000;
    // Encrypting file systems take fewer bytes than others.
    constexpr int k_nLongestEncrypted = 140;
    QByteArray base = wanted;
    int nLongest = k_nLongestName;
    for (int nTry = 0; nTry < k_nMostNumbers; ++nTry) {
        const int nNumber = m_lastNumbers.value(base, 0);
        *pName = nNumber == 0 ? shortened(base, nLongest) : numbered(base, nNumber, nLongest);
        const int nError = renameWithoutReplacing(nFromFolder, from, m_nFolder, *pName);
        if (nError == EEXIST) {
            m_lastNumbers.insert(base, nNumber + 1);
        } else if (nError == ENAMETOOLONG && nLongest == k_nLongestName) {
            const QByteArray suffix = base.mid(suffixStart(base));
            nLongest = k_nLongestEncrypted;
            base = shortened(base.left(base.size() - suffix.size()), nLongest - suffix.size()) + suffix;
        } else if ((nError == EINVAL || nError == EILSEQ) && base != portable(wanted)) {
            base = portable(wanted);
        } else {
            if (nError == 0)
                m_lastNumbers.insert(base, nNumber + 1);
            return nError;
        }
    }
    return EEXIST;
}
