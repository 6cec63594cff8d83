#pragma once

#include <QObject>
#include <QSortFilterProxyModel>

class QComboBox;
class QListView;
class QModelIndex;

/**
 * Lists the entries of an editable combo box that contain what is typed; a tap on one chooses it.
 *
 * The tap that gives the field the focus selects its text, so that typing replaces it. What is typed stays as
 * it is until an entry is tapped. The list is no pop-up: an on-screen keyboard can be used on while it is
 * shown. Belongs to the combo box and lives as long as it.
 */
class ChoiceFinder : public QObject
{
    Q_OBJECT

public:
    /** @param pComboBox an editable one, without a completer of its own */
    explicit ChoiceFinder(QComboBox* pComboBox);

    /** Hides the list with the field, and moves it along; see QObject::eventFilter. Never true. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void find(const QString& strTyped);
    void choose(const QModelIndex& oIndex);
    void place();

private:
    void show();
    QRect freeRect() const;

    QComboBox* m_pComboBox;
    QListView* m_pList;
    QSortFilterProxyModel m_oFound;
    bool m_bTapped = false; // the field has the focus by a tap that is not released yet
};
