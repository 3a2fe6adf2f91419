#include "services/basemodule/documents/ConverterSlot.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QUrl>

#include <unistd.h>
#include <utility>

namespace basemodule {

namespace {

constexpr int kMostSlots = 16;

struct Setting {
    const char *node;
    const char *name;
    const char *value;
};

const Setting kSettings[] = {
    {"Office.Common/Security/Scripting", "DisableMacrosExecution", "true"},
    {"Office.Common/Security/Scripting", "MacroSecurityLevel", "3"},
    // Pictures and data outside the document are neither fetched nor read from the disk.
    {"Office.Common/Security/Scripting", "BlockUntrustedRefererLinks", "true"},
    {"Office.Writer/Content/Update", "Link", "0"},
    {"Office.Writer/Content/Update", "Field", "false"},
    {"Office.Writer/Content/Update", "Chart", "false"},
    {"Office.Calc/Content/Update", "Link", "1"},
    {"Office.Java/VirtualMachine", "Enable", "false"},
    // Where the network cannot be cut, everything goes to a door that is shut.
    {"Inet/Settings", "ooInetProxyType", "1"},
    {"Inet/Settings", "ooInetHTTPProxyName", "127.0.0.1"},
    {"Inet/Settings", "ooInetHTTPProxyPort", "9"},
    {"Inet/Settings", "ooInetHTTPSProxyName", "127.0.0.1"},
    {"Inet/Settings", "ooInetHTTPSProxyPort", "9"},
    {"Inet/Settings", "ooInetNoProxy", ""},
    {"Office.Common/History", "PickListSize", "0"},
    {"Office.Common/Misc", "FirstRun", "false"},
    {"Office.Recovery/RecoveryInfo", "Enabled", "false"},
    // Pages are looked at up close.
    {"Office.Common/Filter/PDF/Export", "ReduceImageResolution", "false"},
};

QByteArray settingsFile()
{
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<oor:items xmlns:oor=\"http://openoffice.org/2001/registry\">\n";
    for (const Setting &setting : kSettings) {
        text += QByteArray("<item oor:path=\"/org.openoffice.") + setting.node + "\"><prop oor:name=\"" + setting.name +
                "\" oor:op=\"fuse\"><value>" + setting.value + "</value></prop></item>\n";
    }
    return text + "</oor:items>\n";
}

} // namespace

ConverterSlot::ConverterSlot(const QString &folder, std::unique_ptr<QLockFile> lock)
    : m_folder(folder)
    , m_lock(std::move(lock))
{
}

ConverterSlot::~ConverterSlot()
{
    clear();
}

void ConverterSlot::clear() const
{
    QDir(work()).removeRecursively();
    QFile::remove(socketPath(profile()));
}

QByteArray ConverterSlot::profileUrl(const QString &profile)
{
    return QUrl::fromLocalFile(profile).toEncoded();
}

QString ConverterSlot::socketPath(const QString &profile)
{
    // Named after the digest of the profile's address, in a folder that cannot be chosen.
    const QString url = QString::fromLatin1(profileUrl(profile));
    const QByteArray digest = QCryptographicHash::hash(
        QByteArray(reinterpret_cast<const char *>(url.utf16()), 2 * url.size()), QCryptographicHash::Md5);
    QString name;
    for (const char byte : digest)
        name += QString::number(uchar(byte), 16);
    return QStringLiteral("/tmp/OSL_PIPE_%1_SingleOfficeIPC_%2").arg(::getuid()).arg(name);
}

std::unique_ptr<ConverterSlot> ConverterSlot::tryPlace(const QString &place)
{
    auto lock = std::make_unique<QLockFile>(place + QStringLiteral("/lock"));
    // The lock of a process that is gone is void, whatever its age; that of a living one never is.
    lock->setStaleLockTime(0);
    if (!lock->tryLock())
        return {};
    std::unique_ptr<ConverterSlot> slot(new ConverterSlot(place, std::move(lock)));
    // Only where we were killed, and the program with us, is there something in it.
    if (QFileInfo::exists(slot->work()))
        slot->discardProfile();
    slot->clear();
    return slot;
}

std::unique_ptr<ConverterSlot> ConverterSlot::acquire(const QString &folder)
{
    std::unique_ptr<ConverterSlot> slot;
    for (int i = 0; i < kMostSlots; ++i) {
        const QString name = QStringLiteral("/converter-%1").arg(i);
        if (!slot && !QDir().mkpath(folder + name))
            return {};
        // The one spelling of the place that the program knows, too.
        const QString place = QFileInfo(folder).canonicalFilePath() + name;
        if (!slot)
            slot = tryPlace(place);
        else if (QFileInfo::exists(place + QStringLiteral("/work")))
            tryPlace(place); // copies of documents are not left lying about
    }
    if (!slot || !QDir().mkpath(slot->work()))
        return {};
    QFile::setPermissions(slot->m_folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    return slot;
}

bool ConverterSlot::prepareProfile() const
{
    const QString user = profile() + QStringLiteral("/user");
    // The program's own lock, left by one that was killed, would make the next one wait for an answer.
    QFile::remove(profile() + QStringLiteral("/.lock"));
    QSaveFile file(user + QStringLiteral("/registrymodifications.xcu"));
    return QDir().mkpath(user) && file.open(QIODevice::WriteOnly) && file.write(settingsFile()) > 0 && file.commit();
}

void ConverterSlot::discardProfile() const
{
    QDir(profile()).removeRecursively();
}

} // namespace basemodule
