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
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication oApplication(argc, argv);
#else // would scale by the display's density; not so the programs that the panel starts
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    QApplication oApplication(argc, argv);
    qunsetenv("QT_ENABLE_HIGHDPI_SCALING");
#endif
    TarnixUI oPanel;
    EventGrabber::getInstance();
    oPanel.setWindowFlags(Qt::FramelessWindowHint);
    oPanel.showFullScreen();
    return QApplication::exec();
}
