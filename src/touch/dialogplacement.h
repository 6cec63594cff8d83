#pragma once

#include <QFont>
#include <QObject>

class DialogWindow;
class FormArea;
class QBoxLayout;
class QDialog;
class QFormLayout;

/**
 * Makes a dialog fit for fingers and for the screen, and keeps it in the middle of what an on-screen keyboard
 * leaves of it.
 *
 * The dialog has a form and, below it, a row of buttons. Where the dialog does not fit, the form scrolls and
 * the buttons stay in sight. Belongs to the dialog and lives as long as it. The screen is the default one.
 */
class DialogPlacement : public QObject
{
    Q_OBJECT

public:
    /**
     * Sets the font, the look, the heights and the size of a dialog that is not shown yet.
     *
     * Fields and buttons are 48 pixels high, or 40 where the dialog does not fit then.
     * @param pDialog a dialog whose `formLayout` lies in a box layout with `horizontalLayout`, its buttons,
     * as the last row; what lies between the two becomes a row of the form
     * @param oFont font of all texts, with a size in pixels
     */
    DialogPlacement(QDialog* pDialog, const QFont& oFont);

    /** Places the dialog when it is shown or its contents change; see QObject::eventFilter. Never true. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void place();

private:
    void makeScrollable();
    void fitButtons();
    void fitTargets(const QFont& oFont);
    void wrapRows();
    void fitDateFields(int nTarget);
    void refreshHints();
    QSize wantedSize() const;

    QDialog* m_pDialog;
    DialogWindow* m_pWindow;
    QFormLayout* m_pForm;
    QBoxLayout* m_pButtons;
    FormArea* m_pArea = nullptr;
    int m_nOutside = 0; // height of all but the form
};
