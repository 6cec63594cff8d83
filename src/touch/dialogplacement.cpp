#include "touch/dialogplacement.h"

#include "touch/formarea.h"
#include "window/dialogwindow.h"
#include "window/visiblescreen.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QInputMethod>

void DialogPlacement::attachTo(QDialog* pDialog, DialogWindow* pWindow, FormArea* pArea)
{
    new DialogPlacement(pDialog, pWindow, pArea);
}

DialogPlacement::DialogPlacement(QDialog* pDialog, DialogWindow* pWindow, FormArea* pArea)
    : QObject(pDialog), m_pDialog(pDialog), m_pWindow(pWindow), m_pArea(pArea),
      m_nOutside(pDialog->sizeHint().height() - pArea->sizeHint().height())
{
    pDialog->installEventFilter(this);
    pArea->widget()->installEventFilter(this);
    QInputMethod* pInputMethod = QGuiApplication::inputMethod();
    connect(pInputMethod, SIGNAL(keyboardRectangleChanged()), this, SLOT(place()));
    connect(pInputMethod, SIGNAL(visibleChanged()), this, SLOT(place()));
    connect(qApp, SIGNAL(focusChanged(QWidget*, QWidget*)), this, SLOT(place()));
}

bool DialogPlacement::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Show) {
        place();
    } else if (pEvent->type() == QEvent::LayoutRequest && pWatched != m_pDialog) {
        QMetaObject::invokeMethod(this, "place", Qt::QueuedConnection); // the layout has its new size by then
    }
    return QObject::eventFilter(pWatched, pEvent);
}

// Returns the size without scrolling, no narrower than the dialog is.
QSize DialogPlacement::wantedSize() const
{
    return {qMax(m_pWindow->sizeHint().width(), m_pWindow->size().width()),
            m_nOutside + m_pArea->sizeHint().height()};
}

void DialogPlacement::place()
{
    const QRect oVisible = visibleScreenRect();
    if (oVisible.isEmpty() || !m_pDialog->isVisible()) { // the focus also moves while the dialog is deleted
        return;
    }
    QRect oRect(QPoint(), wantedSize().boundedTo(oVisible.size()));
    oRect.moveTo(oVisible.left() + (oVisible.width() - oRect.width()) / 2,
                 oVisible.top() + (oVisible.height() - oRect.height()) / 2);
    m_pWindow->setRect(oRect);
    m_pArea->showFocus();
}
