#include "touch/dialogwindow.h"

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QTimer>
#include <QWindow>

namespace {

constexpr int s_nAnswerMilliseconds = 200;

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
        QTimer::singleShot(s_nAnswerMilliseconds, this, SLOT(onShown()));
    }
    return QObject::eventFilter(pWatched, pEvent);
}

// cage 0.2.0 never shows a window that has a parent unless it asks for the full screen. Other compositors
// would paint the screen black around the dialog.
void DialogWindow::onShown()
{
    QWindow* pWindow = m_pDialog->windowHandle();
    if (m_pDialog->isVisible() && !pWindow->isExposed()) {
        pWindow->setWindowStates(Qt::WindowFullScreen);
    }
}
