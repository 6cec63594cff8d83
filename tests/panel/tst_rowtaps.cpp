#include "panel/rowtaps.h"

#include <QLabel>
#include <QMouseEvent>
#include <QScrollArea>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

/** Which releases open a row. */
class TestRowTaps : public QObject
{
    Q_OBJECT

private slots:
    void opens_data()
    {
        // p: press, r: release, b: release beside, of a row; w: press in the window. Then the rows that open.
        QTest::addColumn<QString>("gesture");
        QTest::newRow("tap") << "p0r0>0";
        QTest::newRow("press alone") << "p0>";
        QTest::newRow("release whose press nobody saw") << "r1>1";
        QTest::newRow("such a release after a tap") << "p0r0r1>01";
        QTest::newRow("pressed on another row") << "p0r1>";
        QTest::newRow("pressed elsewhere in the window") << "w3r0>";
        QTest::newRow("pressed on the row, but scrolling kept it") << "w0r0>0";
        QTest::newRow("beside a row") << "p0b0>0";
        QTest::newRow("drag whose release the row passes on") << "p0r1b1>";
        QTest::newRow("below all rows") << "p3b3>";
    }

    void opens()
    {
        QFETCH(QString, gesture);
        QScrollArea oArea;
        oArea.setFrameShape(QFrame::NoFrame);
        oArea.setWidget(new QWidget);
        oArea.widget()->resize(300, 400);
        auto* pColumn = new QVBoxLayout(oArea.widget());
        for (const char* szRow : {"0", "1", "2"}) {
            pColumn->addWidget(new QLabel(szRow));
        }
        pColumn->setContentsMargins(0, 0, 0, 300);
        RowTaps oTaps(&oArea, pColumn);
        oArea.show();
        QString strOpened = gesture.section('>', 0, 0) + '>';
        for (int n = 0; gesture[n] != '>'; n += 2) {
            QLayoutItem* pItem = pColumn->itemAt(gesture[n + 1].digitValue());
            QWidget* pWidget = pItem ? pItem->widget() : oArea.widget();
            const QPoint oPlace = pWidget->rect().center();
            if (gesture[n] == 'w') {
                QTest::mousePress(oArea.windowHandle(), Qt::LeftButton, {}, pWidget->mapTo(&oArea, oPlace));
                continue;
            }
            const QMouseEvent oEvent(gesture[n] == 'p' ? QEvent::MouseButtonPress
                                                       : QEvent::MouseButtonRelease,
                                     oPlace, pWidget->mapToGlobal(oPlace), Qt::LeftButton, Qt::NoButton, {});
            QWidget* pReceiver = gesture[n] == 'b' ? oArea.widget() : pWidget;
            if (const auto* pRow = qobject_cast<QLabel*>(oTaps.tappedRow(pReceiver, &oEvent))) {
                strOpened += pRow->text();
            }
        }
        QCOMPARE(strOpened, gesture);
    }
};

QTEST_MAIN(TestRowTaps)
#include "tst_rowtaps.moc"
