#include "keypadcontext.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>
#include <algorithm>

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

bool isPopupOpen()
{
    const QWindowList oWindows = QGuiApplication::topLevelWindows();
    return std::any_of(oWindows.begin(), oWindows.end(), [](const QWindow* pWindow) {
        return pWindow->type() == Qt::Popup && pWindow->isVisible();
    });
}

} // namespace

bool KeypadContext::isValid() const
{
    return true;
}

void KeypadContext::setFocusObject(QObject* pObject)
{
    Q_UNUSED(pObject)
    showInputPanel();
}

void KeypadContext::showInputPanel()
{
    m_bWanted = true;
    m_oSettling.start(s_nSettleMilliseconds, this);
}

void KeypadContext::hideInputPanel()
{
    m_bWanted = false;
    m_oSettling.start(s_nSettleMilliseconds, this);
}

// What moves aside for the keypad must not move under a finger, nor under its own open list.
void KeypadContext::timerEvent(QTimerEvent* pEvent)
{
    if (pEvent->timerId() != m_oSettling.timerId() || QGuiApplication::mouseButtons() != Qt::NoButton) {
        return;
    }
    if (!isPopupOpen()) {
        m_oSettling.stop();
        setVisible(m_bWanted && inputMethodAccepted());
    } else if (isInputPanelVisible()) {
        m_pWindow->hide();
    }
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
    if (m_oField == pObject && isInputPanelVisible()) {
        return; // Qt 6 asks for it with every key
    }
    m_oField = pObject;
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
        m_oSettling.stop(); // Qt 6 has asked for the keypad with the key before
        setVisible(false);
    } else if (pObject && oKey == key::s_cDelete) {
        type(pObject, Qt::Key_Backspace, {});
    } else if (pObject) {
        type(pObject, oKey.toUpper().unicode(), oKey); // Qt numbers the keys as the characters
    }
}
