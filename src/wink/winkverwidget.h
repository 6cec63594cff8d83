#pragma once

#include <QTimer>
#include <QWidget>

class Ui_winkVerWidget;

/**
 * The overlay for narrow screens: a hand that blinks, the device's name and its address. What it shares with
 * the other overlay is in WinkOverlay. Its least and its greatest height differ by
 * three pixels (required by the device's other software).
 */
class WinkVerWidget : public QWidget
{
    Q_OBJECT

public:
    /**
     * Builds the overlay in the middle of the first screen.
     *
     * The name is asked of the platform client here, once (required by the device's other software), the
     * address also at each blink.
     */
    explicit WinkVerWidget(QWidget* pParent = nullptr);
    ~WinkVerWidget() override;

protected:
    /** Starts the blinking, which never ends (required by the device's other software). */
    void showEvent(QShowEvent* pEvent) override;

private slots:
    void onTimeOut();

private:
    Ui_winkVerWidget* ui;
    QTimer m_oTimer;
};
