#include "touch/busymark.h"

#include <QIcon>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int s_nBarHeight = 6;
constexpr int s_nSeenMilliseconds = 500;
constexpr int s_nTickMilliseconds = 2000;
constexpr char s_szTick[] = ":/images/touch/check.png";

} // namespace

BusyMark::BusyMark(QPushButton* pButton)
    : QObject(pButton), m_pButton(pButton), m_pBar(new QProgressBar(pButton))
{
    m_pBar->setObjectName(QStringLiteral("busyMark"));
    m_pBar->setRange(0, 0); // no end known
    m_pBar->setTextVisible(false);
    m_pBar->setFixedHeight(s_nBarHeight);
    m_pBar->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_pBar->hide();
    auto* pLayout = new QVBoxLayout(pButton);
    pLayout->setContentsMargins(s_nBarHeight, 0, s_nBarHeight, s_nBarHeight);
    pLayout->addWidget(m_pBar, 0, Qt::AlignBottom);
    m_oStopTimer.setSingleShot(true);
    m_oTickTimer.setSingleShot(true);
    connect(&m_oStopTimer, SIGNAL(timeout()), m_pBar, SLOT(hide()));
    connect(&m_oTickTimer, SIGNAL(timeout()), this, SLOT(hideTick()));
}

void BusyMark::finishWith(QObject* pWork)
{
    m_pWork = pWork;
    connect(pWork, SIGNAL(finished(bool)), this, SLOT(finish(bool)));
}

void BusyMark::start()
{
    if (m_pWork) {
        disconnect(m_pWork, nullptr, this, nullptr);
    }
    m_bFailed = false;
    hideTick();
    m_oStopTimer.stop();
    m_pBar->show();
    m_pButton->repaint();
}

void BusyMark::fail()
{
    m_bFailed = true;
}

void BusyMark::finish(bool bDone)
{
    if (!bDone || m_bFailed) {
        m_oStopTimer.start(s_nSeenMilliseconds);
        return;
    }
    m_pBar->hide();
    m_pButton->setIcon(QIcon(s_szTick));
    m_oTickTimer.start(s_nTickMilliseconds);
}

void BusyMark::hideTick()
{
    m_oTickTimer.stop();
    m_pButton->setIcon(QIcon());
}
