#include "keypadcontext.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>

namespace {

constexpr Qt::InputMethodHints s_eNumbers =
    Qt::ImhDigitsOnly | Qt::ImhFormattedNumbersOnly | Qt::ImhPreferNumbers | Qt::ImhDialableCharactersOnly;

constexpr int s_nSettleMilliseconds = 50;

void type(QObject* pObject, int nKey, const QString& strText)
{
    const QPointer<QObject> oObject(pObject);
    for (const QEvent::Type eType : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent oEvent(eType, nKey, Qt::NoModifier, strText);
        if (oObject) {
            QCoreApplication::sendEvent(oObject, &oEvent);
        }
    }
}

} // namespace

bool KeypadContext::isValid() const
{
    return true;
}

void KeypadContext::setFocusObject(QObject* pObject)
{
    Q_UNUSED(pObject)
    m_oFocusMoved.start(s_nSettleMilliseconds, this);
}

// What moves aside for the keypad must not move under a finger.
void KeypadContext::timerEvent(QTimerEvent* pEvent)
{
    if (pEvent->timerId() == m_oFocusMoved.timerId() && QGuiApplication::mouseButtons() == Qt::NoButton) {
        m_oFocusMoved.stop();
        setVisible(inputMethodAccepted());
    }
}

void KeypadContext::showInputPanel()
{
    setVisible(inputMethodAccepted());
}

void KeypadContext::hideInputPanel()
{
    setVisible(false);
}

bool KeypadContext::isInputPanelVisible() const
{
    return m_pWindow && m_pWindow->isVisible();
}

QRectF KeypadContext::keyboardRect() const
{
    return isInputPanelVisible() ? QRectF(m_pWindow->geometry()) : QRectF();
}

void KeypadContext::setVisible(bool bVisible)
{
    QObject* pObject = QGuiApplication::focusObject();
    QWindow* pParent = QGuiApplication::focusWindow();
    if (bVisible && pObject && pParent) {
        open(pObject, pParent);
    } else if (isInputPanelVisible()) {
        m_pWindow->hide();
    }
    emitKeyboardRectChanged();
    emitInputPanelVisibleChanged();
}

void KeypadContext::open(QObject* pObject, QWindow* pParent)
{
    if (!m_pWindow) {
        m_pWindow = new KeypadWindow;
        // The platform deletes this context too late: it has no windows any more.
        static_cast<QObject*>(m_pWindow)->setParent(qApp);
        connect(m_pWindow, SIGNAL(tapped(QChar)), this, SLOT(onTapped(QChar)));
    }
    if (m_pWindow->transientParent() != pParent) {
        m_pWindow->hide(); // on Wayland it is a popup, which keeps its parent while it is shown
        connect(pParent, SIGNAL(visibleChanged(bool)), this, SLOT(onParentVisibleChanged(bool)),
                Qt::UniqueConnection);
    }
    QInputMethodQueryEvent oQuery(Qt::ImHints);
    QCoreApplication::sendEvent(pObject, &oQuery);
    m_pWindow->open(pParent, Qt::InputMethodHints(oQuery.value(Qt::ImHints).toInt()) & s_eNumbers);
}

// On Wayland a popup has to go before its parent does.
void KeypadContext::onParentVisibleChanged(bool bVisible)
{
    if (!bVisible && m_pWindow && sender() == m_pWindow->transientParent()) {
        setVisible(false);
    }
}

void KeypadContext::onTapped(QChar oKey)
{
    QObject* pObject = QGuiApplication::focusObject();
    if (oKey == key::s_cDone) {
        setVisible(false);
    } else if (pObject && oKey == key::s_cDelete) {
        type(pObject, Qt::Key_Backspace, {});
    } else if (pObject) {
        type(pObject, oKey.toUpper().unicode(), oKey); // Qt numbers the keys as the characters
    }
}
