#include "wink/winkverwidget.h"

#include "ui_winkverwidget.h"
#include "wink/winkoverlay.h"

WinkVerWidget::WinkVerWidget(QWidget* pParent) : QWidget(pParent), ui(new Ui_winkVerWidget)
{
    ui->setupUi(this);
    m_pOverlay = new WinkOverlay(this, ui->label, ui->lbl_DeviceName, ui->lbl_IP);
    m_oTimer.setInterval(WinkOverlay::s_nBlinkMilliseconds);
    connect(&m_oTimer, SIGNAL(timeout()), this, SLOT(onTimeOut()));
}

WinkVerWidget::~WinkVerWidget()
{
    delete ui;
}

void WinkVerWidget::setVisible(bool bVisible)
{
    m_pOverlay->setVisible(bVisible);
}

void WinkVerWidget::showEvent(QShowEvent* pEvent)
{
    m_oTimer.start(); // Kept, see docs/compatibility.md
    QWidget::showEvent(pEvent);
}

void WinkVerWidget::onTimeOut()
{
    m_pOverlay->blink();
}
