#pragma once

#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <string>

#include "shell/main/SelectorBoxes.h"

class QToolButton;

namespace vortan {

class ElidedLabel;

/// The status bar of the main window: the boxes of what is active, the text about the solve, and what goes on
/// in front.
class StatusBar {
  public:
    StatusBar(Desktop& desktop, QMainWindow& window);

    SelectorBoxes& Boxes() { return boxes_; }

    /// The foreground operation in panel 5; empty clears it.
    void StatusMessage(const std::string& text);
    /// A word in panel 5 about what has just been done, for some seconds.
    void Note(const std::string& text);
    /// The text about the solve, in panel 4. It stands out while the solve is halted.
    void SolveStatus(const std::string& text);
    /// The window has other colours.
    void PaletteChanged();

    /// A click on the text about the solve. Set by the main window.
    std::function<void()> SolvePanelClick;

  private:
    Desktop& desktop_;
    QMainWindow& window_;
    SelectorBoxes boxes_;
    QToolButton* solvePanel_;
    ElidedLabel* messagePanel_;
    QTimer noteTimer_;
    bool busy_ = false;  // with an operation in panel 5
};

}  // namespace vortan
