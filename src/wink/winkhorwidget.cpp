#include "wink/winkhorwidget.h"

#include "ui_winkhorwidget.h"
#include "wink/winkoverlay.h"

WinkHorWidget::WinkHorWidget(QWidget* pParent) : QWidget(pParent), ui(new Ui_winkHorWidget)
{
    ui->setupUi(this);
    new WinkOverlay(this, ui->label);
    m_oTimer.setInterval(WinkOverlay::s_nBlinkMilliseconds);
    connect(&m_oTimer, SIGNAL(timeout()), this, SLOT(onTimeOut()));
    WinkOverlay::showAddress(ui->lbl_IP);
    WinkOverlay::showDeviceName(ui->lbl_DeviceName);
    WinkOverlay::centre(this);
}

WinkHorWidget::~WinkHorWidget()
{
    delete ui;
}

void WinkHorWidget::showEvent(QShowEvent* pEvent)
{
    m_oTimer.start(); // Kept, see docs/compatibility.md
    QWidget::showEvent(pEvent);
}

void WinkHorWidget::onTimeOut()
{
    WinkOverlay::blink(ui->label, ui->lbl_IP);
}
