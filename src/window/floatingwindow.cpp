#include "window/floatingwindow.h"

#include <QWidget>

// No other kind of window leaves the keyboard to the field on every platform.
void makeFloating(QWidget* pWidget)
{
    pWidget->setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    pWidget->setFocusPolicy(Qt::NoFocus);
    pWidget->setAttribute(Qt::WA_ShowWithoutActivating);
}

void showFloating(QWidget* pWidget, const QRect& oRect)
{
    if (!pWidget->isVisible() || pWidget->geometry() != oRect) {
        pWidget->hide(); // Wayland moves no window that is shown
        pWidget->setGeometry(oRect);
        pWidget->show();
    }
}
