#include "app/MainWindowHandle.h"

#include "app/MainWindow.h"

MainWindowHandle::MainWindowHandle(MainWindow *pWindow)
    : m_pWindow(pWindow)
{
}

void MainWindowHandle::moveBy(const QPoint &offset)
{
    if (m_pWindow != nullptr && !m_pWindow->isMaximized())
        m_pWindow->move(m_pWindow->pos() + offset);
}

bool MainWindowHandle::isMaximized() const
{
    return m_pWindow != nullptr && m_pWindow->isMaximized();
}

void MainWindowHandle::minimize()
{
    if (m_pWindow != nullptr)
        m_pWindow->showMinimized();
}

void MainWindowHandle::toggleMaximized()
{
    if (m_pWindow != nullptr)
        m_pWindow->toggleMaximized();
}

void MainWindowHandle::close()
{
    if (m_pWindow != nullptr)
        m_pWindow->close();
}
