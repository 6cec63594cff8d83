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
    pWidget->installEventFilter(this);
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

// The compositor of eglfs shows every window that is raised, a hidden one too. The frame buffer may report
// a dialog's focus from within putAbove(), when the widget still counts as visible: shown then, it would stay
// hidden for Qt.
void OverlayWindow::restack()
{
    if (m_pWidget->windowHandle()->isVisible()) {
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
        return pWatched == m_pWidget ? returnToBelow(*static_cast<QMouseEvent*>(pEvent))
                                     : passOn(*static_cast<QMouseEvent*>(pEvent));
    default:
        return QObject::eventFilter(pWatched, pEvent);
    }
}

// Returns what a finger would touch there if the overlay were away: an on-screen keyboard, a list found while
// typing, or else the topmost window.
QWindow* OverlayWindow::windowBelow(const QPoint& oGlobal) const
{
    const QWindow* pOverlay = m_pWidget->windowHandle();
    const QWindowList oWindows = QGuiApplication::topLevelWindows();
    for (QWindow* pWindow : oWindows) {
        if (pWindow != pOverlay && pWindow->type() == Qt::ToolTip && pWindow->isVisible() &&
            pWindow->geometry().contains(oGlobal)) {
            return pWindow;
        }
    }
    return pOverlay->transientParent();
}

// Only X delivers no pointer events to a window that is transparent for input.
bool OverlayWindow::passOn(const QMouseEvent& oEvent)
{
    const QPoint oGlobal = globalPosition(oEvent);
    if (oEvent.buttons() == oEvent.button()) { // a press, which what follows belongs to, or no button is down
        m_pBelow = windowBelow(oGlobal);
    }
    if (!m_pBelow) {
        return false;
    }
    const QPoint oPosition = m_pBelow->mapFromGlobal(oGlobal);
    QMouseEvent oPassed(oEvent.type(), oPosition, oPosition, oGlobal, oEvent.button(), oEvent.buttons(),
                        oEvent.modifiers(), oEvent.source());
    QCoreApplication::sendEvent(m_pBelow, &oPassed);
    return true;
}

// A scroller below keeps each press for a while and then sends it to the uppermost widget there, with the
// release: that is the overlay where the platform does not know what is transparent for input.
bool OverlayWindow::returnToBelow(const QMouseEvent& oEvent)
{
    const QPoint oGlobal = globalPosition(oEvent);
    if (oEvent.type() == QEvent::MouseButtonPress) {
        const QWindow* pBelow = windowBelow(oGlobal);
        const QWidget* pWindow = pBelow ? QWidget::find(pBelow->winId()) : nullptr;
        m_pPressed = pWindow ? pWindow->childAt(pWindow->mapFromGlobal(oGlobal)) : nullptr;
    }
    if (m_pPressed) {
        QMouseEvent oPassed(oEvent.type(), m_pPressed->mapFromGlobal(oGlobal),
                            m_pPressed->window()->mapFromGlobal(oGlobal), oGlobal, oEvent.button(),
                            oEvent.buttons(), oEvent.modifiers(), oEvent.source());
        QCoreApplication::sendEvent(m_pPressed, &oPassed);
    }
    return true;
}
