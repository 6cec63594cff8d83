#include "window/dialogwindow.h"

#include "window/waylanddialogwindow.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QWindow>

DialogWindow* DialogWindow::create(QDialog* pDialog)
{
    if (QGuiApplication::platformName().startsWith("wayland")) {
        return new WaylandDialogWindow(pDialog);
    }
    return new DialogWindow(pDialog);
}

DialogWindow::DialogWindow(QDialog* pDialog) : QObject(pDialog), m_pDialog(pDialog)
{
    pDialog->setWindowModality(Qt::WindowModal); // does not block an on-screen keyboard
    pDialog->installEventFilter(this);
}

void DialogWindow::setRect(const QRect& oRect)
{
    m_pDialog->setGeometry(oRect);
}

QSize DialogWindow::size() const
{
    return m_pDialog->size();
}

QSize DialogWindow::sizeHint() const
{
    return m_pDialog->sizeHint();
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
    if (QT_VERSION >= QT_VERSION_CHECK(6, 8, 0) && QGuiApplication::platformName() == "xcb") {
        connect(m_pDialog->windowHandle(), SIGNAL(visibleChanged(bool)), this, SLOT(onVisibleChanged(bool)),
                Qt::UniqueConnection);
    }
}

// Matchbox gives the focus to the panel when a dialog opens, and Qt 6.8 gives it back, without end.
void DialogWindow::onVisibleChanged(bool bVisible)
{
    const QWidget* pPanel = m_pDialog->parentWidget();
    if (QWindow* pWindow = pPanel ? pPanel->window()->windowHandle() : nullptr) {
        pWindow->setFlag(Qt::WindowDoesNotAcceptFocus, bVisible);
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
