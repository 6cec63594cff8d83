#pragma once

#include "touch/tap.h"

#include <QObject>

class QBoxLayout;
class QScrollArea;
class QWidget;

/**
 * Recognises taps on the rows of a scroll area, and the row that each tap means.
 *
 * Sees every press in the window, including those that scrolling withholds from the rows.
 */
class RowTaps : public QObject
{
public:
    /**
     * @param pArea the scroll area; it owns the object
     * @param pValues column of row widgets and blocks of rows; a tap between or beside rows means the nearest
     * row
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
