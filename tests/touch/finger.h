#pragma once

#include "support/panelprocess.h"

#include <QTest>

/** One finger on the screen of a panel: it taps, drags and flings, and looks where it does. */
class Finger
{
public:
    static constexpr int s_nPatience = 10000; // milliseconds
    static constexpr int s_nFinger = 28;      // least width and height of an entry or a day

    Finger(const Display& oDisplay, PanelProcess& oPanel) : m_oDisplay(oDisplay), m_oPanel(oPanel) {}

    // Returns what is visible and has the name or shows the text, the entries of the open list included.
    sWidget find(const QString& strWhat)
    {
        look();
        return seen(strWhat);
    }

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

    // Drags what scrolls until the middle of the widget can be touched and stands still; returns where it is.
    QRect reach(const QString& strWhat)
    {
        QRect oBefore;
        for (int i = 0, nSame = 0; i < 400; ++i) {
            QTest::qWait(25);
            const sWidget oWidget = find(strWhat);
            const QRect oRect = oWidget.rect();
            nSame = std::exchange(oBefore, oRect) == oRect ? nSame + 1 : 0;
            if (nSame < 3) {
                continue; // it may move on, or turn back at an end
            }
            if (oWidget["reachable"].toBool() && m_oArea.contains(oRect.center())) {
                return oRect;
            }
            const int nBy = m_oArea.height() * (oRect.isEmpty() || oRect.y() > m_oArea.y() ? -1 : 1) / 2;
            drag(m_oArea.center() - QPoint(0, nBy / 2), {0, nBy});
        }
        return {};
    }

    // Flings the panel's rows until they end.
    bool flingToEnd(int nDirection)
    {
        return QTest::qWaitFor(
            [&] {
                const QRect oRows = find("scrollAreaWidgetContents").rect();
                const QRect oArea = m_oArea;
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
        return waitFor([this] { return m_bListOpen; });
    }

    bool choose(const QString& strEntry)
    {
        return tap(strEntry) && waitFor([this] { return !m_bListOpen; });
    }

    bool pick(const QString& strComboBox, const QString& strEntry)
    {
        return open(strComboBox) && choose(strEntry) && shows(strComboBox, strEntry);
    }

    bool shows(const QString& strField, const QString& strText)
    {
        return waitFor([&] { return seen(strField).text() == strText; });
    }

    // Waits for what is seen.
    template<class FN>
    bool waitFor(FN fnIsSo)
    {
        const auto fnLooks = [&] {
            look();
            return fnIsSo();
        };
        return QTest::qWaitFor(fnLooks, s_nPatience);
    }

    // Closes the dialog by its button, which has to be in sight with all of it.
    bool close(const QString& strDialog)
    {
        bool bFits = waitFor([&] { return !seen(strDialog).isEmpty(); });
        const QRect oScreen = seen("MorvaWidget").rect();
        bFits = bFits && oScreen.contains(seen(strDialog).rect());
        for (const char* szButton : {"applyButton", "closeButton"}) {
            const QRect oButton = seen(szButton).rect();
            bFits = bFits && oScreen.contains(oButton) && oButton.height() >= 40;
        }
        tap(seen("closeButton").rect().center());
        return waitFor([&] { return seen(strDialog).isEmpty(); }) && bFits;
    }

    bool opensInterface(const QPoint& oPoint, const QString& strInterface)
    {
        const bool bShown = tap(oPoint) && shows("interfaceList_comboBox", strInterface);
        return close("NetworkSettingsDialog") && bShown;
    }

private:
    void look()
    {
        const QList<sWidget> oWidgets = m_oPanel.widgets();
        QList<sWidget> oEntries;
        m_oSeen.clear();
        for (const sWidget& oWidget : oWidgets) {
            if (oWidget["visible"].toBool()) {
                m_oSeen += oWidget;
            }
            const QJsonObject oTexts = oWidget["entries"].toObject();
            for (auto it = oTexts.begin(); it != oTexts.end(); ++it) {
                sWidget oEntry{{{"text", it.key()}, {"rect", it.value()}}};
                const QSize oSize = oEntry.rect().size();
                oEntry["reachable"] = qMin(oSize.width(), oSize.height()) >= s_nFinger;
                oEntries += oEntry;
            }
            m_oArea = oTexts.isEmpty() ? m_oArea : oWidget.rect();
        }
        m_oSeen += oEntries;
        m_bListOpen = !oEntries.isEmpty();
        if (!m_bListOpen) {
            const sWidget oForm = seen("formArea");
            m_oArea = (oForm.isEmpty() ? seen("scrollArea") : oForm).rect();
        }
    }

    sWidget seen(const QString& strWhat) const
    {
        const auto fnIsIt = [&](const sWidget& o) { return o.name() == strWhat || o.text() == strWhat; };
        const auto it = std::find_if(m_oSeen.rbegin(), m_oSeen.rend(), fnIsIt);
        return it == m_oSeen.rend() ? sWidget() : *it;
    }

    const Display& m_oDisplay;
    PanelProcess& m_oPanel;
    QList<sWidget> m_oSeen; // windows that were opened last, and then the entries, come last
    QRect m_oArea;          // what a drag moves: the open list, the dialog's fields or the panel's rows
    bool m_bListOpen = false;
};
