#pragma once

#include <QObject>
#include <QSortFilterProxyModel>
#include <QTimer>

class QComboBox;
class QListView;
class QModelIndex;

/**
 * Lists the entries of an editable combo box that contain the typed text; a tap on one chooses it.
 *
 * The tap that gives the field the focus selects its text, so that typing replaces it. The typed text stays
 * until an entry is tapped. While the list is shown an on-screen keyboard stays usable.
 */
class ChoiceFinder : public QObject
{
    Q_OBJECT

public:
    /** Adds the list to pComboBox, which is editable, has no completer, and owns what is added. */
    static void attachTo(QComboBox* pComboBox);

    /** Hides the list with the field, and moves it along; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void find();
    void choose(const QModelIndex& oIndex);
    void place();

private:
    explicit ChoiceFinder(QComboBox* pComboBox);
    void hide();
    void show();
    QRect freeRect() const;

    QComboBox* m_pComboBox;
    QListView* m_pList;
    QSortFilterProxyModel m_oFound;
    QTimer m_oTyped;
    bool m_bTapped = false; // the field has the focus by a tap that is not released yet
};
