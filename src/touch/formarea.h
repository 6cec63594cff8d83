#pragma once

#include <QScrollArea>

class QFormLayout;

/**
 * The fields of a dialog, dragged by a finger where they do not fit.
 *
 * As high as its fields wherever there is room, and never scrolled sideways.
 */
class FormArea : public QScrollArea
{
    Q_OBJECT

public:
    /** Takes over a form, which must not belong to any layout any more, with its fields. */
    explicit FormArea(QFormLayout* pForm);

    /** Returns the size of all fields at the present width of the area. */
    QSize sizeHint() const override;
    /** Returns the least width of the fields; the height is that of about one field. */
    QSize minimumSizeHint() const override;
    /** Scrolls until the field with the focus can be seen, if one has it. */
    void showFocus();
};
