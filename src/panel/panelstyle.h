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
 * Gives the panel a white background, and the colour of its texts and the font of its banner, which its
 * labels inherit. To be called before the form is built: the form measures its labels and would load another
 * font in vain.
 */
void stylePanel(QWidget* pPanel, const PanelInfo& oPanelInfo);

/** Gives the banner, the main text and the two columns of the form their branding and metrics. */
void styleForm(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo);

/** Makes the scroll bars of the form wide enough for a finger. */
void styleScrollBars(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo);

/** Sets font, height, alignment and colour of a label; one of an unknown type gets the font and height only.
 */
void styleInfoLabel(QLabel* pLabel, eLabelType eType, const PanelInfo& oPanelInfo);

/**
 * Wraps a caption wider than half of the screen into two lines, so that an address fits beside the captions,
 * and makes its value as high. To be called after both labels have their text and style.
 */
void fitRow(QLabel* pCaption, QLabel* pValue, const PanelInfo& oPanelInfo);
