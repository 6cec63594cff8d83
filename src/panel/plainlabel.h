#pragma once

#include <QLabel>

/**
 * A label of plain text, one of many in a scroll area. Out of sight it asks for no paint: Qt looks through
 * all siblings of each label that does, which would take two fifths of the time that 1001 applications take.
 */
class PlainLabel : public QLabel
{
public:
    /** Creates a label that shows a text as it stands, never as markup. */
    PlainLabel(const QString& strText, QWidget* pParent);

protected:
    /** Drops the request for a first paint out of sight. A label that comes into view is painted anyway. */
    bool event(QEvent* pEvent) override;
};
