#include "wink/winkoverlay.h"

#include "platform/ovikplatform.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QScreen>
#include <QWindow>

namespace {

void raiseIfShown(QWidget* pWidget)
{
    if (pWidget->isVisible()) {
        pWidget->raise();
    }
}

} // namespace

WinkOverlay::WinkOverlay(QWidget* pWidget, QLabel* pHand) : QObject(pWidget), m_pWidget(pWidget)
{
    pWidget->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    pWidget->setAttribute(Qt::WA_ShowWithoutActivating);
    // A window manager keeps a full-screen window that has the keyboard, and its dialogs, above all others.
    pWidget->winId();
    pWidget->windowHandle()->setFlag(Qt::BypassWindowManagerHint);

    QSizePolicy oPolicy = pHand->sizePolicy();
    oPolicy.setRetainSizeWhenHidden(true);
    pHand->setSizePolicy(oPolicy);
    pWidget->installEventFilter(this);
    connect(qApp, SIGNAL(focusWindowChanged(QWindow*)), this, SLOT(onFocusWindowChanged(QWindow*)));
}

bool WinkOverlay::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Close) {
        pEvent->ignore();
        return true;
    }
    return QObject::eventFilter(pWatched, pEvent);
}

void WinkOverlay::showAddress(QLabel* pAddress)
{
    pAddress->setText(OVIKPlatform::getInstance()->GetBestInterfaceIP().toString());
}

void WinkOverlay::showDeviceName(QLabel* pDeviceName)
{
    pDeviceName->setText(OVIKPlatform::getInstance()->GetDeviceNameAsString());
}

void WinkOverlay::centre(QWidget* pWidget)
{
    const QList<QScreen*> oScreens = QGuiApplication::screens();
    if (oScreens.isEmpty()) {
        return;
    }
    const QSize oScreen = oScreens.first()->size();
    pWidget->move((oScreen.width() - pWidget->width()) / 2, (oScreen.height() - pWidget->height()) / 2);
}

void WinkOverlay::blink(QLabel* pHand, QLabel* pAddress)
{
    pHand->setVisible(!pHand->isVisible()); // Kept, see docs/compatibility.md
    showAddress(pAddress);
    raiseIfShown(pHand->window()); // above windows of other programs
}

void WinkOverlay::onFocusWindowChanged(QWindow* pWindow)
{
    if (pWindow == m_pWidget->windowHandle()) {
        giveKeyboardBack();
    } else if (pWindow) {
        raiseIfShown(m_pWidget);
    }
}

// Some platforms activate whatever comes to the top.
void WinkOverlay::giveKeyboardBack()
{
    if (QWindow* pDialog = QGuiApplication::modalWindow()) {
        pDialog->requestActivate();
        return;
    }
    const QWindowList oWindows = QGuiApplication::topLevelWindows();
    for (QWindow* pWindow : oWindows) {
        if (pWindow->isVisible() && !pWindow->flags().testFlag(Qt::BypassWindowManagerHint)) {
            pWindow->requestActivate();
            return;
        }
    }
}
