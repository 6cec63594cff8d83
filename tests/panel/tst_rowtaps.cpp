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
        QTest::addColumn<QString>(
            "events"); // p: press, r: release, b: release beside, of a row; w: press in the window
        QTest::addColumn<QString>("opened");
        QTest::newRow("tap") << "p0r0"
                             << "0";
        QTest::newRow("press alone") << "p0"
                                     << "";
        QTest::newRow("release whose press nobody saw") << "r1"
                                                        << "1";
        QTest::newRow("such a release after a tap") << "p0r0r1"
                                                    << "01";
        QTest::newRow("pressed on another row") << "p0r1"
                                                << "";
        QTest::newRow("pressed elsewhere in the window") << "w3r0"
                                                         << "";
        QTest::newRow("pressed there, where scrolling keeps the press") << "w0r0"
                                                                        << "0";
        QTest::newRow("behind the rows") << "p3r3"
                                         << "";
    }

    void opens()
    {
        QFETCH(QString, events);
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
        QString strOpened;
        for (int n = 0; n < events.size(); n += 2) {
            QLayoutItem* pItem = pColumn->itemAt(events[n + 1].digitValue());
            QWidget* pWidget = pItem ? pItem->widget() : oArea.widget();
            const QPoint oPlace = pWidget->rect().center();
            if (events[n] == 'w') {
                QTest::mousePress(oArea.windowHandle(), Qt::LeftButton, {}, pWidget->mapTo(&oArea, oPlace));
                continue;
            }
            const QMouseEvent oEvent(events[n] == 'p' ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease,
                                     oPlace, pWidget->mapToGlobal(oPlace), Qt::LeftButton, Qt::NoButton, {});
            QWidget* pReceiver = events[n] == 'b' ? oArea.widget() : pWidget;
            if (const auto* pRow = qobject_cast<QLabel*>(oTaps.tappedRow(pReceiver, &oEvent))) {
                strOpened += pRow->text();
            }
        }
        QTEST(strOpened, "opened");
    }
};

QTEST_MAIN(TestRowTaps)
#include "tst_rowtaps.moc"
