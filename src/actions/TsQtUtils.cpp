#include "actions/TsQtUtils.h"

#include "common/Platform.h"

#include <QDebug>
#include <QDesktopServices>
#include <QFileInfo>
#include <QFontMetrics>
#include <QUrl>

void TsQtUtils::showInGraphicalShell(const QString &path)
{
    const QString absolutePath = QFileInfo(path).absoluteFilePath();
    if (absolutePath.size() <= Platform::longestRevealPath()) {
        Platform::revealInFileManager(absolutePath);
        return;
    }
    // Absolute paths carry forward slashes, so as a rule nothing is cut and the file itself is opened.
    const QUrl url = QUrl::fromLocalFile(absolutePath.left(absolutePath.lastIndexOf(QLatin1Char('\\'))));
    QDesktopServices::openUrl(url);
    qInfo().noquote() << QStringLiteral("TsQtUtils::showInGraphicalShell org_path ") + path +
                             QStringLiteral(" type2 cmd ") + url.toString();
}

int TsQtUtils::textWidth(const QFont &font, const QString &text)
{
    return text.isEmpty() ? 0 : QFontMetrics(font).boundingRect(text).width();
}

QString TsQtUtils::makeTempFilePath(const QString &folder, const QString &extension)
{
    const QString name = Platform::uniqueTemporaryName(folder);
    return name.isEmpty() ? name : name + extension;
}
