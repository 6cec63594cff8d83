#include "wink/overlaywindow.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace {

// A client of a Wayland compositor can neither place nor raise a window. A tooltip becomes a popup, which the
// compositor keeps where it is told, right above the window that it belongs to.
bool hasPopups()
{
    return QGuiApplication::platformName().startsWith("wayland");
}

QWindow* visibleChild(const QWindow* pParent)
{
    const QWindowList oWindows = QGuiApplication::topLevelWindows();
    for (QWindow* pWindow : oWindows) {
        const bool bCounts = pWindow->isVisible() && pWindow->type() != Qt::ToolTip &&
                             !pWindow->flags().testFlag(Qt::WindowTransparentForInput);
        if (bCounts && pWindow->transientParent() == pParent) {
            return pWindow;
        }
    }
    return nullptr;
}

/** Returns the last of panel, dialog and list that is visible. */
QWindow* topmostWindow()
{
    QWindow* pTopmost = nullptr;
    while (QWindow* pWindow = visibleChild(pTopmost)) {
        pTopmost = pWindow;
    }
    return pTopmost;
}

} // namespace

OverlayWindow::OverlayWindow(QWidget* pWidget) : QObject(pWidget), m_pWidget(pWidget)
{
    pWidget->setAttribute(Qt::WA_ShowWithoutActivating);
    pWidget->winId();
    QWindow* pWindow = pWidget->windowHandle();
    if (hasPopups()) {
        pWindow->setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput);
    } else {
        // A window manager keeps a full-screen window that has the keyboard, and its dialogs, above all
        // others.
        pWindow->setFlags(pWindow->flags() | Qt::BypassWindowManagerHint | Qt::WindowTransparentForInput);
    }
    pWidget->installEventFilter(this);
    connect(qApp, SIGNAL(focusWindowChanged(QWindow*)), this, SLOT(onFocusWindowChanged(QWindow*)));
}

bool OverlayWindow::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (hasPopups() && pEvent->type() == QEvent::Show) {
        attach();
    } else if (hasPopups() && pEvent->type() == QEvent::ZOrderChange) {
        attachAgain();
    }
    return QObject::eventFilter(pWatched, pEvent);
}

void OverlayWindow::attach()
{
    QWindow* pParent = topmostWindow();
    m_pWidget->windowHandle()->setTransientParent(pParent);
    if (pParent) {
        connect(pParent, SIGNAL(visibleChanged(bool)), this, SLOT(onParentVisibleChanged(bool)),
                Qt::UniqueConnection);
    }
}

void OverlayWindow::attachAgain()
{
    if (m_pWidget->isVisible() && topmostWindow() != m_pWidget->windowHandle()->transientParent()) {
        m_pWidget->hide();
        m_pWidget->show();
    }
}

// A popup has to go before the window that it belongs to.
void OverlayWindow::onParentVisibleChanged(bool bVisible)
{
    if (!bVisible && sender() == m_pWidget->windowHandle()->transientParent()) {
        attachAgain();
    }
}

void OverlayWindow::onFocusWindowChanged(QWindow* pWindow)
{
    if (pWindow == m_pWidget->windowHandle()) {
        giveKeyboardBack();
    } else if (pWindow) {
        m_pWidget->raise();
    }
}

// Some platforms activate whatever comes to the top.
void OverlayWindow::giveKeyboardBack()
{
    if (QWindow* pWindow = topmostWindow()) {
        pWindow->requestActivate();
    }
}
