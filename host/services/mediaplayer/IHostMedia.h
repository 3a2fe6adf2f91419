#pragma once

#include <QString>
#include <QtPlugin>

#include <functional>

/**
 * What the host application asks of its own media player beyond the interface that previews know. Reached with
 * qobject_cast from the media player's root object.
 *
 * Owner: the media player. Thread: GUI thread only.
 */
class IHostMedia {
public:
    using ProblemHandler = std::function<void(const QString &)>;

    /** Is called with a readable line when something cannot be played; empty: nobody wants to know. */
    virtual void setProblemHandler(const ProblemHandler &handler) = 0;

protected:
    ~IHostMedia() = default;
};

Q_DECLARE_INTERFACE(IHostMedia, "BigImgPreview.Host.IHostMedia/1.0")
