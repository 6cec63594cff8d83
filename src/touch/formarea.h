#pragma once

#include <QScrollArea>

class QFormLayout;

/**
 * The fields of a dialog, which a finger scrolls if they do not fit.
 *
 * It is as high as its fields wherever there is room, and never scrolls sideways.
 */
class FormArea : public QScrollArea
{
    Q_OBJECT

public:
    /** Takes over a form with its fields, which no layout may own. */
    explicit FormArea(QFormLayout* pForm);

    /** Returns the size of all fields at the present width of the area. */
    QSize sizeHint() const override;
    /** Returns the least width of the fields; the height is that of about one field. */
    QSize minimumSizeHint() const override;
    /** Scrolls until the field with the focus can be seen, if one has it. */
    void showFocus();
    /** Puts fields below their captions. A check box gets a row of its own, as wide as the form. */
    void wrapRows();

private:
    QFormLayout* m_pForm;
};
