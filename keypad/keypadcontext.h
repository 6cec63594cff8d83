#pragma once

#include "keypadwindow.h"

#include <QPointer>
#include <qpa/qplatforminputcontext.h>

/**
 * Opens the keypad for the object that has the focus, if it takes text, and types what is tapped there. The
 * object's input hints choose the keys. Done closes the keypad until the focus moves or the field is tapped
 * again.
 */
class KeypadContext : public QPlatformInputContext
{
    Q_OBJECT

public:
    /** Returns true: the keypad needs nothing but Qt. */
    bool isValid() const override;

    /** Opens the keypad for pObject, or closes it if pObject is null or takes no text. This and the next two
     * take effect soon, once no finger is down and no list is open. */
    void setFocusObject(QObject* pObject) override;

    /** Opens the keypad again if the object with the focus takes text. */
    void showInputPanel() override;

    /** Closes the keypad. */
    void hideInputPanel() override;

    /** Returns whether the keypad is on the screen. */
    bool isInputPanelVisible() const override;

    /** Returns the keypad's place on the screen in pixels; empty while it is closed. */
    QRectF keyboardRect() const override;

protected:
    /** Opens or closes the keypad; hides it below an open list. */
    void timerEvent(QTimerEvent* pEvent) override;

private slots:
    void onTapped(QChar oKey);
    void onParentVisibleChanged(bool bVisible);

private:
    void setVisible(bool bVisible);
    void open(QObject* pObject, QWindow* pParent);

    QBasicTimer m_oSettling;
    bool m_bWanted = false;
    QPointer<KeypadWindow> m_pWindow; // null until it is opened first
    QPointer<QObject> m_oField;       // what it was opened for
};
