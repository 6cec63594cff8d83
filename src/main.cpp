#include "panel/console.h"
#include "panel/tarnixUIwidget.h"
#include "wink/winkwidget.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    Console::guardStandardStreams();
    QApplication oApplication(argc, argv);
    TarnixUI oPanel;
    EventGrabber::getInstance();
    oPanel.setWindowFlags(Qt::FramelessWindowHint);
    oPanel.showFullScreen();
    return QApplication::exec();
}
