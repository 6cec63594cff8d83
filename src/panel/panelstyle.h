#pragma once

class QLabel;
class QWidget;
class Ui_MorvaWidget;
struct PanelInfo;

/** What a label of the panel is for. */
enum eLabelType {
    eType_Label = 0, /**< a caption, such as "PLC Status:" */
    eType_Form = 1   /**< a value, shown beside a caption */
};

/**
 * Sets the panel's white background, and the text colour and banner font that its labels inherit. Call it
 * before the form is built: otherwise Qt loads another font only to measure the form's labels.
 */
void stylePanel(QWidget* pPanel, const PanelInfo& oPanelInfo);

/** Applies branding and metrics to the banner, the main text and the two columns of the form. */
void styleForm(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo);

/** Makes the scroll bars of the form wide enough for a finger. */
void styleScrollBars(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo);

/** Sets font, height, alignment and colour of a label; only font and height if the type is unknown.
 */
void styleInfoLabel(QLabel* pLabel, eLabelType eType, const PanelInfo& oPanelInfo);

/**
 * Wraps a caption wider than half of the screen into two lines, so that an address fits beside the captions,
 * and makes its value as high. Call it after both labels have their text and style.
 */
void fitRow(QLabel* pCaption, QLabel* pValue, const PanelInfo& oPanelInfo);
