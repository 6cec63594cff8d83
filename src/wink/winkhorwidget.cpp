#include "wink/winkhorwidget.h"

#include "ui_winkhorwidget.h"
#include "wink/winkoverlay.h"

WinkHorWidget::WinkHorWidget(QWidget* pParent) : QWidget(pParent), ui(new Ui_winkHorWidget)
{
    ui->setupUi(this);
    m_pOverlay = new WinkOverlay(this, ui->label, ui->lbl_DeviceName, ui->lbl_IP);
    m_oTimer.setInterval(WinkOverlay::s_nBlinkMilliseconds);
    connect(&m_oTimer, SIGNAL(timeout()), this, SLOT(onTimeOut()));
}

WinkHorWidget::~WinkHorWidget()
{
    delete ui;
}

void WinkHorWidget::setVisible(bool bVisible)
{
    m_pOverlay->setVisible(bVisible);
}

void WinkHorWidget::showEvent(QShowEvent* pEvent)
{
    m_oTimer.start(); // Kept, see docs/compatibility.md
    QWidget::showEvent(pEvent);
}

void WinkHorWidget::onTimeOut()
{
    m_pOverlay->blink();
}
