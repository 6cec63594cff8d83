#include "window/overlaywindow.h"

#include "window/globalposition.h"
#include "window/popupguard.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace {

QWindow* visibleChild(const QWindow* pParent)
{
    const QWindowList oWindows = QGuiApplication::topLevelWindows();
    for (QWindow* pWindow : oWindows) {
        if (pWindow->isVisible() && pWindow->type() != Qt::ToolTip && pWindow->transientParent() == pParent) {
            return pWindow;
        }
    }
    return nullptr;
}

// Returns the last one of panel, dialog and list that is visible.
QWindow* topmostWindow()
{
    QWindow* pTopmost = nullptr;
    while (QWindow* pWindow = visibleChild(pTopmost)) {
        pTopmost = pWindow;
    }
    return pTopmost;
}

} // namespace

// A tooltip is unmanaged on X, where window managers keep a full-screen window and its dialogs on top.
// Wayland compositors show it right above its transient parent. On the frame buffer it gets no keys.
OverlayWindow::OverlayWindow(QWidget* pWidget) : QObject(pWidget), m_pWidget(pWidget)
{
    pWidget->setAttribute(Qt::WA_ShowWithoutActivating);
    pWidget->winId();
    pWidget->windowHandle()->setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput);
    pWidget->windowHandle()->installEventFilter(this);
    connect(qApp, SIGNAL(focusWindowChanged(QWindow*)), this, SLOT(restack()));
}

void OverlayWindow::show()
{
    QWindow* pTopmost = topmostWindow();
    if (pTopmost != m_pWidget->windowHandle()->transientParent()) {
        putAbove(pTopmost);
    }
    const PopupGuard oGuard;
    m_pWidget->QWidget::setVisible(true);
    m_pWidget->raise();
}

// The compositor of eglfs shows every window that is raised, a hidden one too.
void OverlayWindow::restack()
{
    if (m_pWidget->isVisible()) {
        show();
    }
}

// On Wayland a visible window keeps its parent.
void OverlayWindow::putAbove(QWindow* pBelow)
{
    m_pWidget->QWidget::setVisible(false);
    m_pWidget->windowHandle()->setTransientParent(pBelow);
    if (pBelow) {
        connect(pBelow, SIGNAL(visibleChanged(bool)), this, SLOT(onParentVisibleChanged(bool)),
                Qt::UniqueConnection);
    }
}

// On Wayland an overlay that outlives its parent would end the connection.
void OverlayWindow::onParentVisibleChanged(bool bVisible)
{
    if (!bVisible) {
        restack();
    }
}

bool OverlayWindow::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    switch (pEvent->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return passOn(*static_cast<QMouseEvent*>(pEvent));
    default:
        return QObject::eventFilter(pWatched, pEvent);
    }
}

// Only X delivers no pointer events to a window that is transparent for input.
bool OverlayWindow::passOn(const QMouseEvent& oEvent) const
{
    QWindow* pBelow = m_pWidget->windowHandle()->transientParent();
    if (!pBelow) {
        return false;
    }
    const QPoint oGlobal = globalPosition(oEvent);
    const QPoint oPosition = pBelow->mapFromGlobal(oGlobal);
    QMouseEvent oPassed(oEvent.type(), oPosition, oPosition, oGlobal, oEvent.button(), oEvent.buttons(),
                        oEvent.modifiers(), oEvent.source());
    QCoreApplication::sendEvent(pBelow, &oPassed);
    return true;
}
