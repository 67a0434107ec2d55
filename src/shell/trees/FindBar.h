#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <functional>
#include <vector>

#include "shell/desk/Desktop.h"
#include "shell/desk/FindWords.h"
#include "shell/trees/Node.h"

namespace vortan {

class Trees;

/// The field to find things with: what is typed narrows the trees to the nodes that have the words, or marks
/// the first place of the page that is in front of them. Enter goes to the next one, Shift+Enter back, Esc
/// closes the field and shows everything again.
class FindBar : public QWidget {
  public:
    /// All three must outlive the bar, which is not shown at first.
    FindBar(Desktop& desktop, Trees& trees);

    void Open();
    void Close();
    /// Finds anew: another page is in front, or none, or the trees are others.
    void Again();

    /// Called when the bar comes and goes.
    std::function<void(bool)> Shown = [](bool) {};

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Typed();
    void Step(FindFrom from);
    void Narrow();
    /// What was found by the trees, in their order.
    std::vector<Node*> Hits() const;
    void Tell(bool found, std::size_t count);

    Desktop& desktop_;
    Trees& trees_;
    QLineEdit* words_;
    QLabel* result_;
    bool open_ = false;
};

}  // namespace vortan
