#include "touch/dialogwindow.h"

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QWindow>

namespace {

bool coversScreen()
{
    return QGuiApplication::platformName().startsWith("wayland");
}

} // namespace

DialogWindow::DialogWindow(QDialog* pDialog) : QObject(pDialog), m_pDialog(pDialog)
{
    if (coversScreen()) {
        pDialog->setAttribute(Qt::WA_TranslucentBackground);
        pDialog->installEventFilter(this);
    }
}

void DialogWindow::setRect(const QRect& oRect)
{
    if (!coversScreen()) {
        m_pDialog->setGeometry(oRect);
        return;
    }
    const QRect oScreen = m_pDialog->screen()->geometry();
    m_pDialog->layout()->setContentsMargins(oRect.left() - oScreen.left(), oRect.top() - oScreen.top(),
                                            oScreen.right() - oRect.right(),
                                            oScreen.bottom() - oRect.bottom());
    m_pDialog->setGeometry(oScreen);
}

QSize DialogWindow::size() const
{
    return m_pDialog->size().shrunkBy(m_pDialog->layout()->contentsMargins());
}

QSize DialogWindow::sizeHint() const
{
    return m_pDialog->sizeHint().shrunkBy(m_pDialog->layout()->contentsMargins());
}

bool DialogWindow::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Show) {
        m_pDialog->windowHandle()->setFlag(Qt::FramelessWindowHint);
    }
    return QObject::eventFilter(pWatched, pEvent);
}
