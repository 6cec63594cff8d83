#pragma once

#include "touch/tap.h"

#include <QObject>

class QBoxLayout;
class QScrollArea;
class QWidget;

/**
 * Recognises the taps on the rows of a scroll area, and which row each of them means.
 *
 * Knows every press in the window, also one that scrolling keeps from the rows.
 */
class RowTaps : public QObject
{
public:
    /**
     * @param pArea the scroll area; it owns the object
     * @param pValues column with a widget for each row, or a block of them. A finger between rows or beside
     * one means the nearest
     */
    RowTaps(QScrollArea* pArea, const QBoxLayout* pValues);

    /**
     * Takes the next event of a row or of the widget that holds the rows.
     * @return the row if the event is the release that completes a tap, or a release on a row whose press
     * nobody saw; null otherwise
     */
    QObject* tappedRow(QObject* pWatched, const QEvent* pEvent);

    /** Watches the window for presses; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void endLostDrag();
    QWidget* rowAt(const QPoint& oGlobal) const;

    QScrollArea* m_pArea;
    const QBoxLayout* m_pValues;
    Tap m_oTap;
};
