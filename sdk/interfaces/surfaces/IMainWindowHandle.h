#pragma once

class QPoint;

/**
 * The host's main window, as far as a preview may steer it. The order of the operations is fixed.
 *
 * Owner: the host. Thread: GUI thread only.
 */
class IMainWindowHandle {
public:
    /** Moves the window by an offset in device-independent pixels. */
    virtual void moveBy(const QPoint &offset) = 0;

    /** True while the window is maximised. */
    virtual bool isMaximized() const = 0;

    /** Minimises the window. */
    virtual void minimize() = 0;

    /** Maximises the window, or restores it when it is maximised. isMaximized tells the new state at once. */
    virtual void toggleMaximized() = 0;

    /** Closes the window, as its own close button would. */
    virtual void close() = 0;

protected:
    ~IMainWindowHandle() = default;
};
