#include "wink/winkoverlay.h"

#include "platform/ovikplatform.h"
#include "window/overlaywindow.h"
#include "window/visiblescreen.h"

#include <QEvent>
#include <QLabel>

WinkOverlay::WinkOverlay(QWidget* pWidget, QLabel* pHand, QLabel* pDeviceName, QLabel* pAddress)
    : QObject(pWidget), m_pWidget(pWidget), m_pHand(pHand), m_pAddress(pAddress)
{
    pWidget->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    m_pWindow = new OverlayWindow(pWidget);
    pWidget->installEventFilter(this);

    QSizePolicy oPolicy = pHand->sizePolicy();
    oPolicy.setRetainSizeWhenHidden(true);
    pHand->setSizePolicy(oPolicy);
    showAddress();
    pDeviceName->setText(OVIKPlatform::getInstance()->GetDeviceNameAsString());
    centre();
}

bool WinkOverlay::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Close) {
        pEvent->ignore();
        return true;
    }
    return QObject::eventFilter(pWatched, pEvent);
}

void WinkOverlay::setVisible(bool bVisible)
{
    if (bVisible) {
        m_pWindow->show();
    } else {
        m_pWidget->QWidget::setVisible(false);
    }
}

void WinkOverlay::blink()
{
    m_pHand->setVisible(!m_pHand->isVisible()); // Kept, see docs/compatibility.md
    showAddress();
    m_pWindow->restack(); // above windows of other programs
}

void WinkOverlay::showAddress()
{
    m_pAddress->setText(OVIKPlatform::getInstance()->GetBestInterfaceIP().toString());
}

void WinkOverlay::centre()
{
    const QSize oScreen = screenRect().size();
    if (!oScreen.isNull()) {
        m_pWidget->move((oScreen.width() - m_pWidget->width()) / 2,
                        (oScreen.height() - m_pWidget->height()) / 2);
    }
}
