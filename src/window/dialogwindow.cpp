#include "window/dialogwindow.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
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
    pDialog->installEventFilter(this);
    if (coversScreen()) {
        pDialog->setAttribute(Qt::WA_TranslucentBackground);
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
    m_pDialog->layout()->activate(); // the caller scrolls to the field that has the focus
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
    switch (pEvent->type()) {
    case QEvent::Show:
        if (pWatched == m_pDialog) {
            prepare();
        }
        return false;
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return pWatched != m_pDialog && passOn(pEvent);
    default:
        return QObject::eventFilter(pWatched, pEvent);
    }
}

void DialogWindow::prepare()
{
    m_pDialog->windowHandle()->installEventFilter(this);
    if (coversScreen()) {
        m_pDialog->windowHandle()->setFlag(Qt::FramelessWindowHint);
        QTimer::singleShot(0, this, SLOT(onShown()));
    }
}

// Only X gives an open list or calendar the keyboard.
bool DialogWindow::passOn(QEvent* pEvent)
{
    const QWidget* pPopup = QApplication::activePopupWidget();
    if (!pPopup) {
        return false;
    }
    if (pEvent->type() == QEvent::ShortcutOverride) {
        pEvent->accept(); // otherwise the list would close at once, and the dialog would get the key
    } else {
        QCoreApplication::sendEvent(pPopup->windowHandle(), pEvent);
    }
    return true;
}

// Only from here on the compositor's answer is read: a slow device may have taken long to come here.
void DialogWindow::onShown()
{
    QTimer::singleShot(s_nAnswerMilliseconds, this, SLOT(onAnswerDue()));
}

// cage 0.2.0 never shows a window that has a parent unless it asks for the full screen. Other compositors
// would paint the screen black around the dialog: one that has shown a dialog is never asked again.
void DialogWindow::onAnswerDue()
{
    static bool s_bShowsDialogs = false;
    if (!m_pDialog->isVisible()) {
        return;
    }
    s_bShowsDialogs |= m_pDialog->windowHandle()->isExposed();
    if (!s_bShowsDialogs) {
        m_pDialog->windowHandle()->setWindowStates(Qt::WindowFullScreen);
    }
}
