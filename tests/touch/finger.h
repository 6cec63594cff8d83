#pragma once

#include "support/panelprocess.h"

#include <QTest>

/** Tells that something has come to rest: seen at the same place for a while, as it turns back at an end. */
struct sStillness
{
    bool isStill(const QRect& oRect)
    {
        QTest::qWait(25);
        m_nSame = std::exchange(m_oRect, oRect) == oRect ? m_nSame + 1 : 0;
        return m_nSame >= 3;
    }

    QRect m_oRect;
    int m_nSame = 0;
};

/** One finger on the screen of a panel: it taps, drags and flings, and looks where it does. */
class Finger
{
public:
    static constexpr int s_nPatience = 5000; // milliseconds

    Finger(const Display& oDisplay, PanelProcess& oPanel) : m_oDisplay(oDisplay), m_oPanel(oPanel) {}

    // Returns the visible widget with the name or, if there is none, the text.
    sWidget find(const QString& strWhat) { return find(m_oPanel.widgets(), strWhat); }
    QString text(const QString& strWhat) { return find(strWhat).text(); }

    bool tap(const QPoint& oPoint) { return m_oDisplay.tap(oPoint); }
    bool tap(const QString& strWhat) { return tap(reach(strWhat).center()); }

    void drag(const QPoint& oFrom, const QPoint& oBy, bool bRest = true)
    {
        QString strWords = QString("mousemove %1 %2 mousedown 1").arg(oFrom.x()).arg(oFrom.y());
        for (int i = 1; i <= 6; ++i) {
            const QPoint oPoint = oFrom + oBy * i / 6;
            strWords += QString(" mousemove %1 %2 sleep 0.01").arg(oPoint.x()).arg(oPoint.y());
        }
        m_oDisplay.pointer(strWords + (bRest ? " sleep 0.1 mouseup 1" : " mouseup 1"));
    }

    // Drags the area until the middle of the widget can be touched, and returns where it is.
    QRect reach(const QString& strWhat)
    {
        sStillness oStillness;
        for (int i = 0; i < 200; ++i) {
            const QList<sWidget> oAll = m_oPanel.widgets();
            const sWidget oForm = find(oAll, "formArea");
            const QRect oArea = (oForm.isEmpty() ? find(oAll, "scrollArea") : oForm).rect();
            const sWidget oWidget = find(oAll, strWhat);
            const bool bStill = oStillness.isStill(oWidget.rect());
            const bool bSeen = oWidget["reachable"].toBool() && oArea.contains(oWidget.rect().center());
            if (bStill && bSeen) {
                return oWidget.rect();
            }
            if (bStill) {
                const int nBy = oArea.height() * (oWidget.rect().y() > oArea.y() ? -1 : 1) / 2;
                drag(oArea.center() - QPoint(0, nBy / 2), {0, nBy});
            }
        }
        return {};
    }

    // Flings the panel's rows until they end.
    bool flingToEnd(int nDirection)
    {
        return QTest::qWaitFor(
            [&] {
                const QList<sWidget> oAll = m_oPanel.widgets();
                const QRect oArea = find(oAll, "scrollArea").rect();
                const QRect oRows = find(oAll, "scrollAreaWidgetContents").rect();
                if (nDirection < 0 ? oRows.bottom() <= oArea.bottom() : oRows.top() >= oArea.top()) {
                    return true;
                }
                const int nBy = nDirection * oArea.height() * 2 / 3;
                drag(oArea.center() - QPoint(0, nBy / 2), {0, nBy}, false);
                return false;
            },
            20000);
    }

    // Opens a list by its right end.
    bool open(const QString& strField)
    {
        const QRect oField = reach(strField);
        tap(QPoint(oField.right() - 4, oField.center().y()));
        return QTest::qWaitFor([&] { return !entries().isEmpty(); }, s_nPatience);
    }

    // Taps an entry of the list that is open, once it is seen and stands still; drags the list until then.
    bool choose(const QString& strEntry)
    {
        sStillness oStillness;
        for (int i = 0; i < 400; ++i) {
            const QRect oEntry = sWidget{entries()}.rect(strEntry);
            const bool bStill = oStillness.isStill(oEntry);
            if (oEntry.height() >= 28 && bStill) {
                return tap(oEntry.center()) &&
                       QTest::qWaitFor([&] { return entries().isEmpty(); }, s_nPatience);
            }
            if (oEntry.height() < 28 && bStill) {
                const QRect oList = m_oList;
                drag(oList.center() + QPoint(0, oList.height() / 3), {0, -oList.height() * 2 / 3});
            }
            if (m_oList.isNull()) {
                return false; // a drag has closed it
            }
        }
        return false;
    }

    bool pick(const QString& strComboBox, const QString& strEntry)
    {
        return open(strComboBox) && choose(strEntry) &&
               m_oPanel.waitForText(strComboBox, strEntry) == strEntry;
    }

    // Closes the dialog by its button, which has to be in sight with all of it.
    bool close(const QString& strDialog)
    {
        const bool bOpen = QTest::qWaitFor([&] { return !find(strDialog).isEmpty(); }, s_nPatience);
        const QList<sWidget> oAll = m_oPanel.widgets();
        const QRect oScreen = find(oAll, "MorvaWidget").rect();
        bool bFits = bOpen && oScreen.contains(find(oAll, strDialog).rect());
        for (const char* szButton : {"applyButton", "closeButton"}) {
            const QRect oButton = find(oAll, szButton).rect();
            bFits = bFits && oScreen.contains(oButton) && oButton.height() >= 40;
        }
        tap(find(oAll, "closeButton").rect().center());
        return QTest::qWaitFor([&] { return find(strDialog).isEmpty(); }, s_nPatience) && bFits;
    }

    bool opensInterface(const QPoint& oPoint, const QString& strInterface)
    {
        tap(oPoint);
        const bool bShown =
            QTest::qWaitFor([&] { return text("interfaceList_comboBox") == strInterface; }, s_nPatience);
        return close("NetworkSettingsDialog") && bShown;
    }

private:
    static sWidget find(const QList<sWidget>& oWidgets, const QString& strWhat)
    {
        sWidget oFound;
        for (const sWidget& oWidget : oWidgets) {
            if (oWidget["visible"].toBool() && (oWidget.name() == strWhat || oWidget.text() == strWhat)) {
                oFound = oWidget;
            }
        }
        return oFound;
    }

    // Returns the entries of the list that is open.
    QJsonObject entries()
    {
        const QList<sWidget> oWidgets = m_oPanel.widgets();
        m_oList = {};
        for (const sWidget& oWidget : oWidgets) {
            if (!oWidget["entries"].toObject().isEmpty()) {
                m_oList = oWidget.rect();
                return oWidget["entries"].toObject();
            }
        }
        return {};
    }

    const Display& m_oDisplay;
    PanelProcess& m_oPanel;
    QRect m_oList; // that was open last
};
