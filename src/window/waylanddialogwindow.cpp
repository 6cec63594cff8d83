#include "window/waylanddialogwindow.h"

#include "window/visiblescreen.h"

#include <QDialog>
#include <QLayout>
#include <QTimer>
#include <QVariant>
#include <QWindow>

namespace {

constexpr int s_nAnswerMilliseconds = 200;
constexpr char s_szShowsDialogs[] = "showsDialogs"; // of the panel's window

} // namespace

WaylandDialogWindow::WaylandDialogWindow(QDialog* pDialog) : DialogWindow(pDialog)
{
    pDialog->setAttribute(Qt::WA_TranslucentBackground);
}

void WaylandDialogWindow::setRect(const QRect& oRect)
{
    const QRect oScreen = screenRect();
    QLayout* pLayout = dialog()->layout();
    pLayout->setContentsMargins(oRect.left() - oScreen.left(), oRect.top() - oScreen.top(),
                                oScreen.right() - oRect.right(), oScreen.bottom() - oRect.bottom());
    dialog()->setGeometry(oScreen);
    pLayout->activate(); // the caller scrolls to the field that has the focus
}

QSize WaylandDialogWindow::size() const
{
    return DialogWindow::size().shrunkBy(dialog()->layout()->contentsMargins());
}

QSize WaylandDialogWindow::sizeHint() const
{
    return DialogWindow::sizeHint().shrunkBy(dialog()->layout()->contentsMargins());
}

void WaylandDialogWindow::prepare()
{
    DialogWindow::prepare();
    dialog()->windowHandle()->setFlag(Qt::FramelessWindowHint);
    QTimer::singleShot(0, this, SLOT(onShown()));
}

// Only from here on the compositor's answer is read: a slow device may have taken long to come here.
void WaylandDialogWindow::onShown()
{
    QTimer::singleShot(s_nAnswerMilliseconds, this, SLOT(onAnswerDue()));
}

// cage 0.2.0 never shows a window that has a parent unless it asks for the full screen. Other compositors
// would paint the screen black around the dialog: one that has shown a dialog is never asked again.
void WaylandDialogWindow::onAnswerDue()
{
    QWindow* pWindow = dialog()->windowHandle();
    QWindow* pPanel = pWindow->transientParent();
    if (!dialog()->isVisible() || !pPanel) {
        return;
    }
    if (pWindow->isExposed()) {
        pPanel->setProperty(s_szShowsDialogs, true);
    } else if (!pPanel->property(s_szShowsDialogs).toBool()) {
        pWindow->setWindowStates(Qt::WindowFullScreen);
    }
}
