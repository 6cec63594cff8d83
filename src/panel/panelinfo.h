#pragma once

#include <QColor>
#include <QCoreApplication>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>

/**
 * Branding and metrics of the panel.
 *
 * Holds pixmaps, so a QGuiApplication must exist. The texts are translated when the record is created.
 */
struct PanelInfo
{
    Q_DECLARE_TR_FUNCTIONS(PanelInfo)

public:
    /**
     * Fills the record with the Quen branding and the metrics of a screen.
     * @param oScreenSize size of the default screen in pixels; its width selects the metrics
     */
    explicit PanelInfo(const QSize& oScreenSize);

    QString szBrand;
    QString szMainText;
    QString szSettingText;
    QString szLbl_DeviceType;
    QString szLbl_IdentNo; /**< empty: the panel hides the ident row */
    QString szLbl_IPAddress;
    QString szLbl_mask;
    QString szLbl_GateWay;
    QString szLbl_TargetVersion;
    QString szLbl_PLCStatus;
    QString szLbl_AppName;
    QString szLbl_SystemDate;
    QString szLbl_SystemTime;
    QString szLbl_SystemSetting;
    QIcon hSystemSettingIcon;
    QPixmap hBitmapLogo;
    QImage hSystemSettingUp;
    QImage hSystemSettingDown;
    int systemSettingFontSize; /**< pixels */
    int mainTextFontSize;      /**< pixels */
    int infoTextFontSize;      /**< pixels */
    int infoTextBorderSize;
    int infoTextLineGap = 2;
    int screenWidth;     /**< pixels */
    int screenHeight;    /**< pixels */
    int bannerSize = 70; /**< height of the banner in pixels */
    int buttonWidth;     /**< pixels */
    int buttonHeight;    /**< pixels */
    QColor bannerColor;
    QColor mainTextColor;
    QColor infoLabelColor;
    QColor infoTextColor;
    int scrollWidth; /**< width of the vertical scroll bar in pixels */
    int spacing;     /**< gap between two rows in pixels */
};
