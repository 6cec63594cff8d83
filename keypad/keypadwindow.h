#pragma once

#include "keylayout.h"

#include <QBasicTimer>
#include <QRasterWindow>

/** The keys, in a window over the lower edge of the screen that takes no focus. */
class KeypadWindow : public QRasterWindow
{
    Q_OBJECT

public:
    /** Creates the window, hidden. */
    KeypadWindow();

    /** Shows the keys for digits and full stop, or those for names, right above pParent. */
    void open(QWindow* pParent, bool bNumbers);

signals:
    /** A key that types something, or key::s_cDelete or key::s_cDone, has been released or repeats. */
    void tapped(QChar oKey);

protected:
    /** Paints the keys. */
    void paintEvent(QPaintEvent* pEvent) override;
    /** Presses the key under the finger. */
    void mousePressEvent(QMouseEvent* pEvent) override;
    /** Lets go of the key when the finger leaves it. */
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    /** Taps the pressed key. */
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    /** Repeats Delete while it is pressed. */
    void timerEvent(QTimerEvent* pEvent) override;

private:
    struct sKey
    {
        QChar oKey;
        QRect oRect;
    };

    void setPage(eKeyPage ePage);
    void press(int nKey);
    void tap(QChar oKey);
    bool isOnPressedKey(const QPoint& oPosition) const;
    int keyAt(const QPoint& oPosition) const;
    QString labelOf(const sKey& oKey) const;

    eKeyPage m_ePage = eKeyPage_Numbers;
    QVector<sKey> m_oKeys;
    int m_nPressed = -1;
    bool m_bShift = false;
    QBasicTimer m_oRepeat;
};
