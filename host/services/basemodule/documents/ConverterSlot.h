#pragma once

#include <QByteArray>
#include <QLockFile>
#include <QString>

#include <memory>

namespace basemodule {

/**
 * A profile and a work folder that no other conversion uses, of this process or another one. The profile stays, so that
 * the program starts quickly the next time; the work folder is emptied before and after.
 *
 * Owner: one conversion. Thread: that one; touches the disk.
 */
class ConverterSlot {
public:
    /** A free one below this folder; null when the disk refuses or too many are at work. */
    static std::unique_ptr<ConverterSlot> acquire(const QString &folder);
    ~ConverterSlot();
    ConverterSlot(const ConverterSlot &) = delete;
    ConverterSlot &operator=(const ConverterSlot &) = delete;

    QString work() const { return m_folder + QStringLiteral("/work"); }
    QString profile() const { return m_folder + QStringLiteral("/profile"); }

    /** Writes the office program's settings: no macros, no links, no network, no memory of what it opened. */
    bool prepareProfile() const;
    /** The profile's address, as the office program wants it. */
    QByteArray profileUrl() const { return profileUrl(profile()); }
    static QByteArray profileUrl(const QString &profile);

    /** Where the office program listens for a second start of itself; a killed one leaves it behind. */
    static QString socketPath(const QString &profile);

    /** After a program that was killed in the middle of who knows what. */
    void discardProfile() const;

private:
    ConverterSlot(const QString &folder, std::unique_ptr<QLockFile> lock);
    /** The one in this place, emptied; null while somebody is using it. */
    static std::unique_ptr<ConverterSlot> tryPlace(const QString &place);
    void clear() const;

    const QString m_folder;
    const std::unique_ptr<QLockFile> m_lock;
};

} // namespace basemodule
