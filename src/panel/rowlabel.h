#pragma once

#include <QLabel>

/** A label of a row that is created at run time. Shows plain text. */
class RowLabel : public QLabel
{
public:
    /** Creates a label that shows the text unchanged, never as markup. */
    RowLabel(const QString& strText, QWidget* pParent);

protected:
    /** Ignores the first paint request while the label is out of sight. */
    bool event(QEvent* pEvent) override;
};

/** Shows a text from the runtime unchanged, truncated to 65536 UTF-16 units. */
void showText(QLabel* pLabel, const QString& strText);
