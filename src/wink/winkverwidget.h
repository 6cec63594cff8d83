#pragma once

#include <QTimer>
#include <QWidget>

class Ui_winkVerWidget;
class WinkOverlay;

/**
 * The overlay for screens up to 480 pixels wide: a blinking hand, the device's name and its address.
 * WinkOverlay has what both overlays share.
 */
class WinkVerWidget : public QWidget
{
    Q_OBJECT

public:
    /**
     * Builds the overlay in the middle of the first screen, hidden.
     *
     * Reads the name from the platform client once, the address at each blink.
     */
    explicit WinkVerWidget(QWidget* pParent = nullptr);
    ~WinkVerWidget() override;

    /** Shows the overlay above all windows of the panel, or hides it; see QWidget::setVisible. */
    void setVisible(bool bVisible) override;

protected:
    /** Starts the blink timer, which nothing stops. */
    void showEvent(QShowEvent* pEvent) override;

private slots:
    void onTimeOut();

private:
    Ui_winkVerWidget* ui;
    QTimer m_oTimer;
    WinkOverlay* m_pOverlay = nullptr;
};
