#include "window/overlaywindow.h"

#include "window/globalposition.h"

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

// As a tooltip the window is out of the hands of X window managers, which keep a full-screen window and its
// dialogs above all others; Wayland compositors keep it where it is, right above its transient parent; and on
// the frame buffer it gets no keyboard.
OverlayWindow::OverlayWindow(QWidget* pWidget) : QObject(pWidget), m_pWidget(pWidget)
{
    pWidget->setAttribute(Qt::WA_ShowWithoutActivating);
    pWidget->winId();
    pWidget->windowHandle()->setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput);
    pWidget->windowHandle()->installEventFilter(this);
    pWidget->installEventFilter(this);
    connect(qApp, SIGNAL(focusWindowChanged(QWindow*)), this, SLOT(onFocusWindowChanged(QWindow*)));
}

void OverlayWindow::show(QWidget* pWidget)
{
    const Qt::WindowFlags oFlags = pWidget->windowFlags();
    pWidget->overrideWindowFlags(Qt::ToolTip); // any other window would close the list
    pWidget->show();
    pWidget->overrideWindowFlags(oFlags);
    pWidget->raise();
}

bool OverlayWindow::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    switch (pEvent->type()) {
    case QEvent::Show:
        attach();
        return false;
    case QEvent::ZOrderChange:
        attachAgain();
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return passOn(static_cast<QMouseEvent*>(pEvent));
    default:
        return QObject::eventFilter(pWatched, pEvent);
    }
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
    const QWindow* pWindow = m_pWidget->windowHandle();
    if (pWindow->isVisible() && topmostWindow() != pWindow->transientParent()) {
        m_pWidget->hide();
        show(m_pWidget);
    }
}

// On Wayland an overlay that outlives its parent would end the connection.
void OverlayWindow::onParentVisibleChanged(bool bVisible)
{
    if (!bVisible && sender() == m_pWidget->windowHandle()->transientParent()) {
        attachAgain();
    }
}

void OverlayWindow::onFocusWindowChanged(QWindow* pWindow)
{
    if (pWindow) {
        m_pWidget->raise();
    }
}

// Only X keeps fingers from a window that is transparent for input.
bool OverlayWindow::passOn(const QMouseEvent* pEvent) const
{
    QWindow* pBelow = m_pWidget->windowHandle()->transientParent();
    if (!pBelow) {
        return false;
    }
    const QPoint oGlobal = globalPosition(*pEvent);
    const QPoint oPosition = pBelow->mapFromGlobal(oGlobal);
    QMouseEvent oEvent(pEvent->type(), oPosition, oPosition, oGlobal, pEvent->button(), pEvent->buttons(),
                       pEvent->modifiers(), pEvent->source());
    QCoreApplication::sendEvent(pBelow, &oEvent);
    return true;
}
