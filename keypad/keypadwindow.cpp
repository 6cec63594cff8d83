#include "keypadwindow.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

namespace {

constexpr int s_nGap = 2;
constexpr int s_nMargin = 2; // beside a label
constexpr int s_nDrift = 12;
constexpr int s_nFirstRepeatMilliseconds = 500;
constexpr int s_nRepeatMilliseconds = 100;
constexpr QRgb s_nGround = 0xff1b2f3c;
constexpr QRgb s_nPressed = 0xff0b7f86;
constexpr char s_szFontFamily[] = "Arial"; // where no desktop names a font, Qt can take a monospaced one

// Half as high as the key, or less where the text would be wider than it.
QFont fontFor(const QString& strLabel, const QSize& oKey)
{
    QFont oFont(s_szFontFamily);
    oFont.setPixelSize(oKey.height() / 2);
    const int nWidth = QFontMetrics(oFont).horizontalAdvance(strLabel);
    const int nRoom = oKey.width() - 2 * s_nMargin;
    if (nWidth > nRoom) {
        oFont.setPixelSize(oFont.pixelSize() * nRoom / nWidth);
    }
    return oFont;
}

} // namespace

// X window managers leave a tooltip alone, Wayland compositors keep it above its transient parent, and no
// platform gives it the keyboard.
KeypadWindow::KeypadWindow()
{
    setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
}

void KeypadWindow::open(QWindow* pParent, bool bNumbers)
{
    setTransientParent(pParent);
    m_bShift = false;
    setPage(bNumbers ? eKeyPage_Numbers : eKeyPage_Letters);
    show();
    raise();
}

void KeypadWindow::setPage(eKeyPage ePage)
{
    const QRect oScreen = screen()->geometry();
    const QStringList oRows = keyRows(ePage, oScreen.size());
    const auto nRows = static_cast<int>(oRows.size());
    const int nHeight = keyHeight(nRows, oScreen.size());
    m_ePage = ePage;
    m_oKeys.clear();
    press(-1);
    for (int nRow = 0; nRow < nRows; ++nRow) {
        const auto nKeys = static_cast<int>(oRows[nRow].size());
        for (int i = 0; i < nKeys; ++i) {
            const int nLeft = oScreen.width() * i / nKeys;
            const int nRight = oScreen.width() * (i + 1) / nKeys;
            m_oKeys.append({oRows[nRow][i], QRect(nLeft, nRow * nHeight, nRight - nLeft, nHeight)});
        }
    }
    const int nTop = oScreen.height() - nRows * nHeight;
    setGeometry(oScreen.adjusted(0, nTop, 0, 0));
    update();
}

void KeypadWindow::paintEvent(QPaintEvent* pEvent)
{
    Q_UNUSED(pEvent)
    QPainter oPainter(this);
    oPainter.fillRect(QRect(QPoint(), size()), QColor(s_nGround));
    for (int i = 0; i < m_oKeys.size(); ++i) {
        const QRect oRect = m_oKeys[i].oRect.adjusted(s_nGap, s_nGap, -s_nGap, -s_nGap);
        const bool bDark = i == m_nPressed || (m_bShift && m_oKeys[i].oKey == key::s_cShift);
        const QString strLabel = labelOf(m_oKeys[i]);
        oPainter.setFont(fontFor(strLabel, oRect.size()));
        oPainter.fillRect(oRect, bDark ? QColor(s_nPressed) : QColor(Qt::white));
        oPainter.setPen(bDark ? Qt::white : Qt::black);
        oPainter.drawText(oRect, Qt::AlignCenter, strLabel);
    }
}

void KeypadWindow::mousePressEvent(QMouseEvent* pEvent)
{
    press(keyAt(pEvent->pos()));
    if (m_nPressed >= 0 && m_oKeys[m_nPressed].oKey == key::s_cDelete) {
        m_oRepeat.start(s_nFirstRepeatMilliseconds, this);
    }
}

void KeypadWindow::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (!isOnPressedKey(pEvent->pos())) {
        press(-1);
    }
}

void KeypadWindow::mouseReleaseEvent(QMouseEvent* pEvent)
{
    const int nKey = isOnPressedKey(pEvent->pos()) ? m_nPressed : -1;
    press(-1);
    if (nKey >= 0) {
        tap(m_oKeys[nKey].oKey);
    }
}

void KeypadWindow::timerEvent(QTimerEvent* pEvent)
{
    if (pEvent->timerId() == m_oRepeat.timerId()) {
        m_oRepeat.start(s_nRepeatMilliseconds, this);
        emit tapped(key::s_cDelete);
    }
}

void KeypadWindow::press(int nKey)
{
    m_oRepeat.stop();
    m_nPressed = nKey;
    update();
}

void KeypadWindow::tap(QChar oKey)
{
    switch (oKey.toLatin1()) {
    case key::s_cShift:
        m_bShift = !m_bShift;
        break;
    case key::s_cMore:
        setPage(m_ePage == eKeyPage_Letters ? eKeyPage_MoreLetters : eKeyPage_Letters);
        break;
    case key::s_cSigns:
        setPage(m_ePage == eKeyPage_Signs ? eKeyPage_Letters : eKeyPage_Signs);
        break;
    default:
        emit tapped(m_bShift ? oKey.toUpper() : oKey);
        m_bShift = false;
    }
}

// A rolling finger may drift over the edge.
bool KeypadWindow::isOnPressedKey(const QPoint& oPosition) const
{
    const QMargins oMargins(s_nDrift, s_nDrift, s_nDrift, s_nDrift);
    return m_nPressed >= 0 && m_oKeys[m_nPressed].oRect.marginsAdded(oMargins).contains(oPosition);
}

int KeypadWindow::keyAt(const QPoint& oPosition) const
{
    for (int i = 0; i < m_oKeys.size(); ++i) {
        if (m_oKeys[i].oRect.contains(oPosition)) {
            return i;
        }
    }
    return -1;
}

QString KeypadWindow::labelOf(const sKey& oKey) const
{
    const QString strLabel = keyLabel(oKey.oKey, m_ePage);
    return m_bShift && strLabel.size() == 1 ? strLabel.toUpper() : strLabel;
}
