#include "panel/console.h"
#include "panel/tarnixUIwidget.h"
#include "wink/winkwidget.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    Console::guardStandardStreams();
    // Nothing draws with OpenGL; loading it would double start-up time and memory.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    // The same look on every display. -style and QT_STYLE_OVERRIDE win.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication oApplication(argc, argv);
    TarnixUI oPanel;
    EventGrabber::getInstance();
    oPanel.setWindowFlags(Qt::FramelessWindowHint);
    oPanel.showFullScreen();
    return QApplication::exec();
}
