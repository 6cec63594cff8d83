#pragma once

#include <QObject>

class QDialog;
class QWidget;
struct PanelInfo;

/**
 * Makes a dialog fit for fingers and for the screen, and keeps it in the middle of what an on-screen keyboard
 * leaves of it.
 *
 * Belongs to the dialog and lives as long as it. The screen is the default one.
 */
class DialogPlacement : public QObject
{
    Q_OBJECT

public:
    /**
     * Sets the font, the heights and the size of a dialog that is not shown yet.
     *
     * Fields and buttons are 48 pixels high, less where the screen is too low for the dialog then.
     * @param pDialog a dialog without scrolling parts, with all its widgets
     */
    DialogPlacement(QDialog* pDialog, const PanelInfo& oPanelInfo);

    /** Centres the dialog when it is shown or changes its size; see QObject::eventFilter. Never true. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void place();

private:
    void fitLists();
    void fitFields(const PanelInfo& oPanelInfo);
    void wrapRows();
    void setFieldHeight(int nHeight);
    int topOf(const QRect& oVisible) const;

    QDialog* m_pDialog;
};
