#include "wink/winkoverlay.h"

#include "platform/ovikplatform.h"
#include "window/overlaywindow.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>

WinkOverlay::WinkOverlay(QWidget* pWidget, QLabel* pHand) : QObject(pWidget)
{
    pWidget->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    new OverlayWindow(pWidget);

    QSizePolicy oPolicy = pHand->sizePolicy();
    oPolicy.setRetainSizeWhenHidden(true);
    pHand->setSizePolicy(oPolicy);
    pWidget->installEventFilter(this);
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
    pHand->window()->raise(); // above windows of other programs
}
