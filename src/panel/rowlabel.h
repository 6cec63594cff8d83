#pragma once

#include <QLabel>

/** A label of one of the many rows that are created while the panel runs. Shows plain text. */
class RowLabel : public QLabel
{
public:
    /** Creates a label that shows a text as it stands, never as markup. */
    RowLabel(const QString& strText, QWidget* pParent);

protected:
    /** Handles the request for a first paint, which has no effect out of sight. */
    bool event(QEvent* pEvent) override;
};

/** Shows a text of the runtime as it stands; of one longer than 65536 UTF-16 units only the beginning. */
void showText(QLabel* pLabel, const QString& strText);
