#pragma once

#include <QFrame>
#include <QLabel>
#include <functional>

namespace vortan {

/// The line above a snapshot, hidden until the plan has gone on: it says so, and offers to build it anew.
class BehindLine : public QFrame {
  public:
    /// `what` is "chart" or "report"; `build` is what its button does.
    BehindLine(const char* what, std::function<void()> build);

    /// `warning`: what building it anew will lose.
    void Show(const char* warning = "");

  private:
    const char* what_;  // a literal
    QLabel* text_;
};

}  // namespace vortan
