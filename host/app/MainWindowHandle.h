#pragma once

#include "interfaces/surfaces/IMainWindowHandle.h"

#include <QPointer>

class MainWindow;

/** The window as previews steer it. Owner: HostSession; outlives the previews. Thread: GUI thread only. */
class MainWindowHandle final : public IMainWindowHandle {
public:
    explicit MainWindowHandle(MainWindow *pWindow);
    virtual ~MainWindowHandle() = default;
    Q_DISABLE_COPY(MainWindowHandle)

    void moveBy(const QPoint &offset) override;
    bool isMaximized() const override;
    void minimize() override;
    void toggleMaximized() override;
    void close() override;

private:
    QPointer<MainWindow> m_pWindow;
};
