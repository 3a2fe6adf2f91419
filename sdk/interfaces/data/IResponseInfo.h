#pragma once

#include <QMetaType>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVector>

/** The host's answer to an asynchronous request. Read-only and shared; any thread. */
class IResponseInfo {
public:
    /** Return codes that the plug-in tells apart; every other value is a failure without a text of its own. */
    enum ReturnCode { Success = 0, InsufficientDiskSpace = 32305 };

    /** 0 for success. */
    virtual int returnCode() const = 0;

    /** What went wrong, for the log. */
    virtual QString errorMessage() const = 0;

    /** One line for each thing that went wrong. A request succeeded when the code is 0 and this list is empty. */
    virtual QStringList errorList() const = 0;

    /** Files for which the request failed. */
    virtual QVector<qint64> failedFiles() const = 0;

    /** Files that the host left out (locked, not permitted). */
    virtual QVector<qint64> skippedFiles() const = 0;

    /** Files that no longer exist. */
    virtual QVector<qint64> missingFiles() const = 0;

protected:
    ~IResponseInfo() = default;
};

using ResponseInfoPtr = QSharedPointer<const IResponseInfo>;

Q_DECLARE_METATYPE(QSharedPointer<const IResponseInfo>)
