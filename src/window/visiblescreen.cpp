#include "window/visiblescreen.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QScreen>

QRect screenRect()
{
    const QScreen* pScreen = QGuiApplication::primaryScreen();
    return pScreen ? pScreen->geometry() : QRect();
}

QRect visibleScreenRect()
{
    QRect oVisible = screenRect();
    const QInputMethod* pInputMethod = QGuiApplication::inputMethod();
    const QRect oKeyboard = pInputMethod->keyboardRectangle().toAlignedRect();
    if (!oVisible.isNull() && pInputMethod->isVisible() && !oKeyboard.isEmpty()) {
        oVisible.setBottom(oKeyboard.top() - 1);
    }
    return oVisible;
}

qreal screenDotsPerInch()
{
    const QScreen* pScreen = QGuiApplication::primaryScreen();
    return pScreen ? pScreen->physicalDotsPerInch() : 0;
}
