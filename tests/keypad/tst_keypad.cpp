#include "keylayout.h"
#include "support/panelprocess.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <QVBoxLayout>

namespace {

// Returns where the keypad has the key, once it shows the page.
QPoint placeOf(QChar oKey, eKeyPage ePage)
{
    const QSize oScreen = QGuiApplication::primaryScreen()->size();
    const QStringList oRows = keyRows(ePage, oScreen);
    const int nHeight = static_cast<int>(oRows.size()) * keyHeight(static_cast<int>(oRows.size()), oScreen);
    const QRect oKeypad(0, oScreen.height() - nHeight, oScreen.width(), nHeight);
    if (!QTest::qWaitFor([&] { return QGuiApplication::inputMethod()->keyboardRectangle() == oKeypad; })) {
        return {};
    }
    for (int i = 0; i < oRows.size(); ++i) {
        const auto nKey = static_cast<int>(oRows[i].indexOf(oKey));
        const auto nKeys = static_cast<int>(oRows[i].size());
        const auto nRows = static_cast<int>(oRows.size());
        if (nKey >= 0) {
            return oKeypad.topLeft() + QPoint(oKeypad.width() * (2 * nKey + 1) / (2 * nKeys),
                                              oKeypad.height() * (2 * i + 1) / (2 * nRows));
        }
    }
    return {};
}

} // namespace

/** A finger types into the fields of a modal dialog through the keypad. */
class TestKeypad : public QObject
{
    Q_OBJECT

private slots:
    void hasKeysForAFinger()
    {
        for (const QSize oScreen : {QSize(240, 320), QSize(320, 240), QSize(480, 272), QSize(800, 480)}) {
            QString strNames;
            for (const auto ePage :
                 {eKeyPage_Numbers, eKeyPage_Letters, eKeyPage_MoreLetters, eKeyPage_Signs}) {
                const QStringList oRows = keyRows(ePage, oScreen);
                const auto nRows = static_cast<int>(oRows.size());
                QVERIFY(nRows * keyHeight(nRows, oScreen) <= oScreen.height() / 2);
                for (const QString& strRow : oRows) {
                    QVERIFY(oScreen.width() / strRow.size() >= 40);
                }
                strNames += ePage == eKeyPage_Numbers ? QString() : oRows.join("");
            }
            for (const QChar oKey : QString("abcdefghijklmnopqrstuvwxyz0123456789/_+-.")) {
                QVERIFY2(strNames.contains(oKey), qPrintable(QString(oKey)));
            }
        }
    }

    void typesWhatTheFieldTakes()
    {
        QDialog oDialog;
        oDialog.setModal(true);
        auto* pLayout = new QVBoxLayout(&oDialog);
        auto* pAddress = new QLineEdit("1.2.3.4");
        pAddress->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
        auto* pName = new QComboBox;
        pName->setEditable(true);
        pName->addItems({"", "One"});
        auto* pCheckBox = new QCheckBox("No text");
        for (QWidget* pWidget : std::initializer_list<QWidget*>{pCheckBox, pAddress, pName}) {
            pLayout->addWidget(pWidget);
        }
        oDialog.move(0, 0);
        oDialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&oDialog));
        const QInputMethod* pInputMethod = QGuiApplication::inputMethod();

        tap(rightOf(pAddress));
        QTRY_VERIFY(pInputMethod->isVisible());
        QElapsedTimer oHeld;
        oHeld.start();
        press(placeOf(key::s_cDelete, eKeyPage_Numbers));
        QTRY_COMPARE(pAddress->text(), QString());
        QVERIFY2(oHeld.elapsed() > 1000, "deletes faster than a finger can be lifted");
        point("mouseup 1");
        type(eKeyPage_Numbers, "10.0.0.77");
        QTRY_COMPARE(pAddress->text(), QString("10.0.0.77"));

        tap(pName->mapToGlobal(QPoint(10, 10)));
        type(eKeyPage_Letters, "\ta");
        const QPoint oEdge = (placeOf('a', eKeyPage_Letters) + placeOf('s', eKeyPage_Letters)) / 2;
        press(oEdge - QPoint(4, 0));
        point("mousemove_relative 10 0 mouseup 1"); // a finger drifts
        type(eKeyPage_Letters, "b\f");
        type(eKeyPage_Signs, "/7_+-\b");
        QTRY_COMPARE(pName->currentText(), QString("Aab/7_+"));
        tap(rightOf(pName)); // opens its list
        QTRY_VERIFY(pName->view()->isVisible() && !pInputMethod->isVisible());
        QTest::keyClick(pName->view(), Qt::Key_Escape);
        tap(rightOf(pAddress));
        QTRY_VERIFY(pInputMethod->isVisible());
        press(rightOf(pCheckBox));
        const int nBefore = m_nTimeouts;
        QTRY_VERIFY(m_nTimeouts > nBefore + 1);
        QVERIFY(pCheckBox->hasFocus() && pInputMethod->isVisible()); // until the finger is lifted
        point("mouseup 1");
        QTRY_VERIFY(!pInputMethod->isVisible());
        tap(rightOf(pAddress));
        QTRY_VERIFY(pInputMethod->isVisible());
        type(eKeyPage_Numbers, "\r");
        QTRY_VERIFY(!pInputMethod->isVisible());
        tap(rightOf(pAddress));
        QTRY_VERIFY(pInputMethod->isVisible());
        oDialog.hide();
        QTRY_VERIFY(!pInputMethod->isVisible());
    }

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override
    {
        const bool bFinger = pWatched->isWindowType() && pEvent->spontaneous();
        if (bFinger && pEvent->type() == QEvent::MouseButtonPress) {
            m_bPressed = true;
        } else if (bFinger && pEvent->type() == QEvent::MouseButtonRelease) {
            m_bPressed = false;
            ++m_nReleases;
        } else if (pEvent->type() == QEvent::Timer && pWatched->inherits("KeypadContext")) {
            ++m_nTimeouts;
        }
        return QObject::eventFilter(pWatched, pEvent);
    }

private:
    // Waits until a press or release that the command ends with has come.
    void point(const QString& strCommand) const
    {
        const int nReleases = m_nReleases;
        QProcess::execute("xdotool", strCommand.split(' '));
        const bool bPress = strCommand.contains("mousedown");
        QTRY_VERIFY(bPress ? m_bPressed : m_nReleases > nReleases);
    }

    void press(const QPoint& oPoint) const
    {
        point(QString("mousemove %1 %2 mousedown 1").arg(oPoint.x()).arg(oPoint.y()));
    }

    void tap(const QPoint& oPoint) const
    {
        point(QString("mousemove %1 %2 click 1").arg(oPoint.x()).arg(oPoint.y()));
    }

    static QPoint rightOf(const QWidget* pWidget)
    {
        return pWidget->mapToGlobal(QPoint(pWidget->width() - 10, pWidget->height() / 2));
    }

    void type(eKeyPage ePage, const char* szKeys)
    {
        for (const QChar oKey : QString(szKeys)) {
            tap(placeOf(oKey, ePage));
        }
    }

    bool m_bPressed = false;
    int m_nReleases = 0;
    int m_nTimeouts = 0; // of the keypad that waits to open or close
};

int main(int argc, char* argv[])
{
    const VirtualDisplay oDisplay({800, 480});
    qputenv("DISPLAY", oDisplay.name().toLatin1());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_IM_MODULE", "tarnixui-keypad");
    qputenv("QT_PLUGIN_PATH", KEYPAD_PATH);
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets); // as the panel draws
    QApplication oApplication(argc, argv);
    TestKeypad oTest;
    oApplication.installEventFilter(&oTest);
    return QTest::qExec(&oTest, argc, argv);
}

#include "tst_keypad.moc"
