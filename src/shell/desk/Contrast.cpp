#include "shell/desk/Contrast.h"

#include <cstdlib>

namespace vortan {

bool IsHighContrast(const QPalette& palette) {
    constexpr int kBlack = 8, kWhite = 247;  // of 255
    const auto extreme = [&](QPalette::ColorRole role) {
        const int light = palette.color(role).lightness();
        return light <= kBlack || light >= kWhite;
    };
    const int apart = std::abs(palette.color(QPalette::WindowText).lightness() -
                               palette.color(QPalette::Window).lightness());
    return extreme(QPalette::Window) && extreme(QPalette::Base) && extreme(QPalette::Button) &&
           apart >= kWhite - kBlack;
}

QString ContrastSheet(const QPalette& palette) {
    if (!IsHighContrast(palette)) return {};
    return "QLineEdit,QComboBox,QAbstractSpinBox,QPushButton,QToolBar QToolButton:focus,QGroupBox,"
           "QListView,QPlainTextEdit{border:1px solid palette(window-text);}"
           "QPushButton{padding:3px 10px;} QPushButton:focus,QPushButton:default{border-width:2px;}"
           "QGroupBox{margin-top:1.2em;} QGroupBox::title{subcontrol-origin:margin;}"
           "QCheckBox::indicator,QRadioButton::indicator,QMenu::indicator"
           "{width:0.8em;height:0.8em;border:1px solid palette(window-text);}"
           "QRadioButton::indicator{border-radius:0.4em;}"
           "QCheckBox::indicator:checked,QRadioButton::indicator:checked,QMenu::indicator:checked"
           "{background:palette(highlight);}"
           "QCheckBox:focus,QRadioButton:focus{border:1px dotted palette(window-text);}";
}

}  // namespace vortan
