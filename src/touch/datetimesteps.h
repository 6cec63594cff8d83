#pragma once

#include <QWidget>

class QDateTimeEdit;
class QLabel;
class QLineEdit;
class QPushButton;

/**
 * Two buttons that change one part of a date and time: by one with each tap, by many while held.
 *
 * The part is the one that was tapped in the field; its name stands between the buttons. A tap selects it, so
 * that typing replaces it. Parts wrap around.
 */
class DateTimeSteps : public QWidget
{
    Q_OBJECT

public:
    /** @param pEdit the field; outlives the buttons. They are enabled while it is. */
    explicit DateTimeSteps(QDateTimeEdit* pEdit);

    /** Follows the field; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void stepDown();
    void stepUp();
    void selectPart();
    void showPart();

private:
    QPushButton* makeButton(const QString& strName, const QString& strText, const char* szSlot);
    void step(int nSteps);

    QDateTimeEdit* m_pEdit;
    QLineEdit* m_pText;
    QLabel* m_pPart;
};
