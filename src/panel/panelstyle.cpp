#include "panel/panelstyle.h"

#include "panel/panelinfo.h"
#include "touch/colours.h"
#include "touch/lineheight.h"
#include "ui_tarnixUIwidget.h"

#include <QScrollBar>

namespace {

constexpr char s_szFontFamily[] = "Arial";
constexpr char s_szScrollBarSheet[] =
    "QScrollBar { background-color: @trough; }"
    "QScrollBar:vertical { width: %1px; }"
    "QScrollBar:horizontal { height: %1px; }"
    "QScrollBar::handle { background-color: @handle; border-radius: 4px;"
    " margin: 4px; min-width: 48px; min-height: 48px; }"
    "QScrollBar::add-line, QScrollBar::sub-line { width: 0px; height: 0px; }";

bool hasTextColor(const QWidget* pWidget, const QColor& oColor)
{
    const QPalette& oPalette = pWidget->palette();
    return oPalette.color(QPalette::Active, QPalette::WindowText) == oColor &&
           oPalette.color(QPalette::Inactive, QPalette::WindowText) == oColor &&
           oPalette.color(QPalette::Disabled, QPalette::WindowText) == oColor;
}

void setTextColor(QWidget* pWidget, const QColor& oColor)
{
    if (hasTextColor(pWidget, oColor)) {
        return; // a palette for each label would take a fifth of the time that rows take
    }
    QPalette oPalette = pWidget->palette();
    oPalette.setColor(QPalette::WindowText, oColor);
    pWidget->setPalette(oPalette);
}

void setFont(QWidget* pWidget, int nPixelSize, QFont::Weight eWeight)
{
    QFont oFont = pWidget->font();
    oFont.setFamily(s_szFontFamily);
    oFont.setPixelSize(nPixelSize);
    oFont.setWeight(eWeight);
    pWidget->setFont(oFont);
}

void styleBanner(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo)
{
    oForm.banner->setFixedHeight(oPanelInfo.bannerSize);
    oForm.banner->setStyleSheet(QStringLiteral("background-color: %1").arg(oPanelInfo.bannerColor.name()));
    QPalette oPalette = oForm.banner->palette();
    oPalette.setBrush(QPalette::Window, oPanelInfo.bannerColor);
    oForm.banner->setPalette(oPalette);

    oForm.toolButton->setIcon(oPanelInfo.hSystemSettingIcon);
    oForm.toolButton->setIconSize(QSize(oPanelInfo.buttonWidth, oPanelInfo.buttonHeight));
    oForm.toolButton->setContentsMargins(0, 0, 0, 0);
    oForm.toolButton->setAutoRaise(true);

    oForm.systemSettingsLabel->setText(oPanelInfo.szLbl_SystemSetting);
    oForm.logo->setPixmap(oPanelInfo.hBitmapLogo);
}

} // namespace

void stylePanel(QWidget* pPanel, const PanelInfo& oPanelInfo)
{
    setFont(pPanel, oPanelInfo.systemSettingFontSize, QFont::Normal);
    QPalette oPalette = pPanel->palette();
    oPalette.setColor(QPalette::Window, Qt::white);
    oPalette.setColor(QPalette::WindowText, oPanelInfo.mainTextColor);
    pPanel->setPalette(oPalette);
    pPanel->setAutoFillBackground(true);
}

void styleForm(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo)
{
    for (QLayout* pColumn : {oForm.captionLayout, oForm.valueLayout}) {
        pColumn->setContentsMargins(0, 6, 0, 0);
        pColumn->setSpacing(oPanelInfo.spacing);
    }
    // Captions end where values begin, whatever direction a text or the desktop has.
    oForm.scrollAreaWidgetContents->setLayoutDirection(Qt::LeftToRight);
    styleBanner(oForm, oPanelInfo);

    oForm.mainText->setText(oPanelInfo.szMainText);
    setFont(oForm.mainText, oPanelInfo.mainTextFontSize, QFont::Normal);
    oForm.mainText->setMinimumHeight(lineHeight(oForm.mainText->font()));
    setTextColor(oForm.mainText, oPanelInfo.mainTextColor);
    // In the middle of the screen, also while the rows are wider than that.
    oForm.mainText->setFixedWidth(oPanelInfo.screenWidth - oPanelInfo.scrollWidth);
    oForm.contentsLayout->setAlignment(oForm.mainText, Qt::AlignLeft);
}

void styleScrollBars(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo)
{
    const QString strSheet = withColours(s_szScrollBarSheet).arg(oPanelInfo.scrollWidth);
    QScrollBar* pVertical = oForm.scrollArea->verticalScrollBar();
    pVertical->parentWidget()->setStyleSheet(strSheet);
    oForm.scrollArea->horizontalScrollBar()->parentWidget()->setStyleSheet(strSheet);
    pVertical->setStyleSheet(withColours("background-color:  @trough;")); // Kept, see docs/compatibility.md
}

void styleInfoLabel(QLabel* pLabel, eLabelType eType, const PanelInfo& oPanelInfo)
{
    setFont(pLabel, oPanelInfo.infoTextFontSize, QFont::Bold);
    // One height for all, whatever script a text is in, keeps the two columns in step.
    pLabel->setFixedHeight(oPanelInfo.infoTextFontSize * 3 / 2);

    if (eType == eType_Label) {
        pLabel->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
        setTextColor(pLabel, oPanelInfo.mainTextColor);
    } else if (eType == eType_Form) {
        pLabel->setAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
        setTextColor(pLabel, oPanelInfo.infoTextColor);
    }
}

void fitRow(QLabel* pCaption, QLabel* pValue, const PanelInfo& oPanelInfo)
{
    if (pCaption->sizeHint().width() * 2 <= oPanelInfo.screenWidth) {
        return;
    }
    const int nHeight = pCaption->fontMetrics().lineSpacing() * 2;
    pCaption->setWordWrap(true);
    pCaption->setFixedHeight(nHeight);
    pValue->setFixedHeight(nHeight);
}
