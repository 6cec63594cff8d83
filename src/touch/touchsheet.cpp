#include "touch/touchsheet.h"

#include "touch/colours.h"
#include "touch/lineheight.h"

namespace {

// %1 is the height of a target, %2 that without the border, %3 and %4 are the font, %5 is the height of its
// lines.
constexpr char s_szSheet[] = R"(
QWidget { font-family: "%3"; font-size: %4px; }
QWidget#fields { background: white; }
QDialog > .QFrame { border: 2px solid @dark; background: white; }
QLabel, QCheckBox { color: black; font-weight: bold; }
QLabel { min-height: %5px; }
QLabel:disabled, QCheckBox:disabled { color: @offText; }
QLineEdit, QComboBox, QAbstractSpinBox {
    min-height: %2px; border: 2px solid @border; border-radius: 4px; padding: 0px 6px; background: white; color: black;
    selection-background-color: @accent; selection-color: white; }
QLineEdit:focus, QComboBox:focus, QAbstractSpinBox:focus { border-color: @accent; background: @tint; }
QLineEdit:disabled, QComboBox:disabled, QAbstractSpinBox:disabled {
    border-color: @offBorder; background: @offField; color: @offText; }
QComboBox QLineEdit, QAbstractSpinBox QLineEdit {
    min-height: 0px; border: none; border-radius: 0px; padding: 0px; background: transparent; }
QComboBox { combobox-popup: 0; }
QComboBox::drop-down, QDateTimeEdit::drop-down {
    subcontrol-origin: border; subcontrol-position: center right; width: %1px; height: %1px; border: none; }
QComboBox::down-arrow, QDateTimeEdit::down-arrow {
    image: url(:/images/touch/arrow-down.png); width: 24px; height: 24px; }
QComboBox::down-arrow:disabled, QDateTimeEdit::down-arrow:disabled {
    image: url(:/images/touch/arrow-down-disabled.png); }
QCheckBox { min-height: %1px; spacing: 6px; }
QCheckBox::indicator { width: 28px; height: 28px; border: 2px solid @dark; border-radius: 4px; background: white; }
QCheckBox::indicator:checked { background: @accent; border-color: @accent; image: url(:/images/touch/check.png); }
QCheckBox::indicator:pressed { background: @dark; }
QCheckBox:focus { color: @accent; }
QPushButton, QToolButton {
    min-height: %2px; min-width: %2px; border: 2px solid @dark; border-radius: 4px; padding: 0px 6px;
    background: white; color: @dark; outline: none; }
QPushButton:focus, QToolButton:focus { border-color: @accent; }
QPushButton#stepDown, QPushButton#stepUp { font-size: 28px; }
QPushButton[accent="true"] { background: @accent; border-color: @accent; color: white; }
QPushButton[accent="true"]:focus { border-color: @dark; }
QPushButton:pressed, QPushButton[accent="true"]:pressed, QToolButton:pressed {
    background: @dark; border-color: @dark; color: white; }
QPushButton:disabled, QToolButton:disabled { border-color: @offBorder; background: @offField; color: @offText; }
QProgressBar { border: none; background: transparent; }
QProgressBar::chunk { background: white; width: 12px; margin-right: 6px; }
QListView {
    border: 2px solid @dark; background: white; color: black; outline: none;
    selection-background-color: @accent; selection-color: white; }
QListView::item { min-height: %1px; padding: 0px 6px; border: none; background: white; color: black; }
QListView::item:selected { background: @accent; color: white; }
QCalendarWidget { border: 2px solid @dark; background: white; }
QCalendarWidget QWidget { background: white; alternate-background-color: @tint; }
QCalendarWidget QTableView { selection-background-color: @accent; selection-color: white; outline: none; }
QScrollBar:vertical { width: 8px; background: @trough; }
QScrollBar::handle { background: @handle; border-radius: 2px; margin: 2px; min-height: 36px; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0px; height: 0px; }
QScrollBar::add-page, QScrollBar::sub-page { background: none; }
)";
constexpr int s_nBorders = 4;

} // namespace

QString touchSheet(int nTarget, const QFont& oFont)
{
    return withColours(s_szSheet)
        .arg(nTarget)
        .arg(nTarget - s_nBorders)
        .arg(oFont.family())
        .arg(oFont.pixelSize())
        .arg(lineHeight(oFont));
}
