#pragma once

#include <QTimer>
#include <QWidget>

class Ui_winkHorWidget;

/**
 * The overlay for landscape screens: a hand that blinks, the device's name and its address. What it shares
 * with the other overlay is in WinkOverlay.
 */
class WinkHorWidget : public QWidget
{
    Q_OBJECT

public:
    /**
     * Builds the overlay in the middle of the first screen.
     *
     * The name is asked of the platform client here, once (required by the device's other software), the
     * address also at each blink.
     */
    explicit WinkHorWidget(QWidget* pParent = nullptr);
    ~WinkHorWidget() override;

protected:
    /** Starts the blinking, which never ends (required by the device's other software). */
    void showEvent(QShowEvent* pEvent) override;

private slots:
    void onTimeOut();

private:
    Ui_winkHorWidget* ui;
    QTimer m_oTimer;
};
