#include "wink/winkverwidget.h"

#include "ui_winkverwidget.h"
#include "wink/winkoverlay.h"

WinkVerWidget::WinkVerWidget(QWidget* pParent) : QWidget(pParent), ui(new Ui_winkVerWidget)
{
    ui->setupUi(this);
    new WinkOverlay(this, ui->label);
    m_oTimer.setInterval(WinkOverlay::s_nBlinkMilliseconds);
    connect(&m_oTimer, SIGNAL(timeout()), this, SLOT(onTimeOut()));
    WinkOverlay::showAddress(ui->lbl_IP);
    WinkOverlay::showDeviceName(ui->lbl_DeviceName);
    WinkOverlay::centre(this);
}

WinkVerWidget::~WinkVerWidget()
{
    delete ui;
}

void WinkVerWidget::showEvent(QShowEvent* pEvent)
{
    m_oTimer.start(); // Kept, see docs/compatibility.md
    QWidget::showEvent(pEvent);
}

void WinkVerWidget::onTimeOut()
{
    WinkOverlay::blink(ui->label, ui->lbl_IP);
}
