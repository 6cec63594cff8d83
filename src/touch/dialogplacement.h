#pragma once

#include <QObject>

class DialogWindow;
class FormArea;
class QDialog;
class QSize;

/** Keeps a dialog in the middle of what an on-screen keyboard leaves of the screen. */
class DialogPlacement : public QObject
{
    Q_OBJECT

public:
    /** Watches pDialog, which is not shown yet, has its size and style sheet, and owns the watcher. */
    static void attachTo(QDialog* pDialog, DialogWindow* pWindow, FormArea* pArea);

    /** Places the dialog when it is shown or its contents change; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void place();

private:
    DialogPlacement(QDialog* pDialog, DialogWindow* pWindow, FormArea* pArea);
    QSize wantedSize() const;

    QDialog* m_pDialog;
    DialogWindow* m_pWindow;
    FormArea* m_pArea;
    int m_nOutside; // height of all but the form
};
