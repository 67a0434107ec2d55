#pragma once

#include <functional>
#include <string>
#include <vector>

#include "charts/Vwindow.h"

namespace vortan {

/// What the page of the desktop that shows a chart, and everything that prints or copies one, know of it: a
/// surface, its titles, its few options, and which broadcasts it answers. A chart reads the solution when it
/// lays itself out and holds no copy.
class ChartForm : private Vwindow::Owner {
  public:
    /// A control in the frame in front of the chart. Choices exclude each other.
    struct Option {
        enum class Kind { Button, Check, Choice };
        Kind kind;
        std::string name, caption;
        bool on = false;                  ///< of a check or choice, at the start
        std::function<void(bool)> click;  ///< with what it is now; the page draws the chart anew afterwards
    };
    struct OptionsFrame {
        std::string name, caption;
        std::vector<Option> options;  ///< none: no frame
    };
    /// What the chart does when a broadcast comes.
    enum class Answer { Nothing, Start, Unload };
    struct Answers {
        Answer newThisProject = Answer::Nothing, newThisTemplate = Answer::Nothing,
               newJournal = Answer::Nothing, newSolution = Answer::Nothing;
    };

    /// `metrics` must outlive the form, or its replacement by Vwindow::SetFont.
    ChartForm(Vwindow::Style style, const TextMetrics& metrics) : vwindow_(style, metrics, this) {}
    ~ChartForm() override = default;
    ChartForm(const ChartForm&) = delete;
    ChartForm& operator=(const ChartForm&) = delete;

    /// Under which settings keep its font.
    virtual std::string Name() const = 0;
    /// Takes the range of dates from what is to be shown, lays the chart out and draws it.
    virtual void Start() = 0;
    /// Of the page, and at the head of each printed one.
    virtual std::string Caption() const = 0;
    virtual OptionsFrame Frame() { return {}; }
    virtual Answers AnswersTo() const { return {}; }
    /// What to tell about a place of the surface, a line each; empty for nothing.
    virtual std::string TipAt(int /*x*/, int /*y*/) const { return {}; }

    Vwindow& TheVwindow() { return vwindow_; }
    const Vwindow& TheVwindow() const { return vwindow_; }

  protected:
    Vwindow vwindow_;
};

}  // namespace vortan
