#include "panel/panelinfo.h"

#include <climits>

namespace {

struct sMetrics
{
    int nMaxScreenWidth;
    int nSystemSettingFontSize;
    int nMainTextFontSize;
    int nInfoTextFontSize;
    int nInfoTextBorderSize;
    int nButtonSize;
    int nScrollWidth;
    int nSpacing;
};

constexpr sMetrics s_oSmall{272, 12, 18, 16, 10, 32, 20, 24};
constexpr sMetrics s_oMedium{480, 25, 24, 16, 10, 48, 24, 24};
constexpr sMetrics s_oLarge{INT_MAX, 25, 30, 20, 20, 48, 32, 32};

const sMetrics& metricsFor(int nScreenWidth)
{
    if (nScreenWidth <= s_oSmall.nMaxScreenWidth) {
        return s_oSmall;
    }
    return nScreenWidth <= s_oMedium.nMaxScreenWidth ? s_oMedium : s_oLarge;
}

} // namespace

PanelInfo::PanelInfo(const QSize& oScreenSize)
    : szBrand(QStringLiteral("QUEN")),
      szMainText(tr("No TARNIX Vistrel Loaded")), // Kept, see docs/compatibility.md
      szLbl_DeviceType(tr("Device Type:")), szLbl_IdentNo(tr("")), szLbl_IPAddress(tr("IP Address:")),
      szLbl_mask(tr("Subnet Mask:")), szLbl_GateWay(tr("Std. Gateway:")),
      szLbl_TargetVersion(tr("Target Version:")), szLbl_PLCStatus(tr("PLC Status:")),
      szLbl_AppName(tr("Application Name:")), szLbl_SystemDate(tr("System Date:")),
      szLbl_SystemTime(tr("System Time:")), szLbl_SystemSetting(tr("System Settings")),
      hSystemSettingIcon(QStringLiteral(":/images/quen/setting_up.bmp")),
      hBitmapLogo(QStringLiteral(":/images/quen/logo.bmp")), screenWidth(oScreenSize.width()),
      screenHeight(oScreenSize.height()), bannerColor(Qt::white), mainTextColor(Qt::black),
      infoLabelColor(Qt::black), infoTextColor(Qt::black)
{
    const sMetrics& oMetrics = metricsFor(screenWidth);
    systemSettingFontSize = oMetrics.nSystemSettingFontSize;
    mainTextFontSize = oMetrics.nMainTextFontSize;
    infoTextFontSize = oMetrics.nInfoTextFontSize;
    infoTextBorderSize = oMetrics.nInfoTextBorderSize;
    buttonWidth = oMetrics.nButtonSize;
    buttonHeight = oMetrics.nButtonSize;
    scrollWidth = oMetrics.nScrollWidth;
    spacing = oMetrics.nSpacing;
}
