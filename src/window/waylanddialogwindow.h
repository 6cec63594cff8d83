#pragma once

#include "window/dialogwindow.h"

/**
 * A dialog on Wayland, where clients cannot place their windows and some compositors raise the panel above a
 * dialog when a finger touches it: its window covers the whole screen and is transparent around the dialog.
 */
class WaylandDialogWindow : public DialogWindow
{
    Q_OBJECT

public:
    /** Makes the dialog's window transparent. */
    explicit WaylandDialogWindow(QDialog* pDialog);

    void setRect(const QRect& oRect) override;
    QSize size() const override;
    QSize sizeHint() const override;

protected:
    void prepare() override;

private slots:
    void onShown();
    void onAnswerDue();
};
