// A minimal window of the same toolkit: the peer for the panel's start, memory and idle time.
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QTime>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int s_nRows = 16;

QLayout* makeBanner()
{
    auto* pBanner = new QHBoxLayout;
    auto* pButton = new QToolButton;
    pButton->setIcon(QIcon(":/images/quen/setting_up.bmp"));
    auto* pPicture = new QLabel;
    pPicture->setPixmap(QPixmap(":/images/quen/logo.bmp"));
    pBanner->addWidget(pButton);
    pBanner->addStretch();
    pBanner->addWidget(pPicture);
    return pBanner;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication oApplication(argc, argv);
    QWidget oWindow;
    oWindow.setGeometry(QGuiApplication::primaryScreen()->geometry());

    auto* pRows = new QWidget;
    auto* pColumns = new QHBoxLayout(pRows);
    auto* pCaptions = new QVBoxLayout;
    auto* pValues = new QVBoxLayout;
    pColumns->addLayout(pCaptions);
    pColumns->addLayout(pValues);
    QLabel* pClock = nullptr;
    for (int i = 0; i < s_nRows; ++i) {
        pCaptions->addWidget(new QLabel("Caption:"));
        pValues->addWidget(pClock = new QLabel("Value"));
    }
    auto* pScrollArea = new QScrollArea;
    pScrollArea->setWidgetResizable(true);
    pScrollArea->setWidget(pRows);

    auto* pLayout = new QVBoxLayout(&oWindow);
    pLayout->addLayout(makeBanner());
    pLayout->addWidget(pScrollArea);

    QTimer oTimer;
    QObject::connect(&oTimer, &QTimer::timeout,
                     [pClock] { pClock->setText(QTime::currentTime().toString("HH:mm:ss")); });
    oTimer.start(1000);
    oWindow.setWindowFlags(Qt::FramelessWindowHint);
    oWindow.showFullScreen();
    return QApplication::exec();
}
