#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "charts/Vwindow.h"

namespace vortan {

class Vdependency;
class Vresource;
class Vtask;

/// What the page of the desktop that shows a chart, and everything that prints or copies one, know of it: a
/// surface, its titles, its few options, and which broadcasts it answers. A chart reads the solution when it
/// lays itself out and holds no copy.
class ChartForm : private Vwindow::Owner {
  public:
    /// A control in the frame of the chart. Choices exclude each other.
    struct Option {
        enum class Kind { Button, Check, Choice, List };
        Kind kind;
        std::string name, caption;
        bool on = false;  ///< of a check or choice
        std::function<void(bool)>
            click{};                       ///< with what it is now; the page starts the chart anew afterwards
        std::vector<std::string> items{};  ///< of a list
        int chosen = 0;                    ///< of a list: the item
        std::function<void(int)> choose{};  ///< of a list, as `click`
    };
    struct OptionsFrame {
        std::string name, caption;
        std::vector<Option> options;  ///< none: no frame
        bool beside = false;          ///< left of the surface instead of in front of it
    };
    /// What a place of a chart stands for, at most one of both.
    struct Subject {
        Vtask* task = nullptr;
        Vresource* resource = nullptr;
    };
    /// Keys that walk through the boxes of a chart, and move the one that they stand on.
    enum class Key { Left, Right, Up, Down, MoveUp, MoveDown };
    enum class DragState { None, Still, Moved };
    /// What a drag does.
    enum class Drag { None, UpDown, Date, Link };
    /// What a drag that has ended asks for; a chart changes no plan. A prerequisite: a new dependency of the
    /// task; a dependency: its new date; neither: the task was clicked on.
    struct Wish {
        Vtask* task = nullptr;
        Vtask* required = nullptr;
        int fromPercent = 100, toPercent = 0;
        Vdependency* dependency = nullptr;
        DateTime date{};
    };
    /// Corners on the surface, twips.
    struct Box {
        int x1, y1, x2, y2;
    };
    /// A list that stands beside the surface.
    struct SideList {
        struct Row {
            std::vector<std::string> texts;
            Subject subject;
        };
        std::string name, caption;
        std::vector<std::string> titles;
        std::vector<Row> rows;
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
    /// As the options are now.
    virtual OptionsFrame Frame() { return {}; }
    virtual Answers AnswersTo() const { return {}; }
    /// None if there is nothing to list.
    virtual std::optional<SideList> Beside() const { return std::nullopt; }
    /// What to tell about a place of the surface, a line each; empty for nothing.
    virtual std::string TipAt(int /*x*/, int /*y*/) const { return {}; }
    /// What a row shows in pictures, behind its cells; empty for nothing.
    virtual std::string RowText(int /*row*/) const { return {}; }
    /// Whose entry form a double click opens there.
    virtual Subject SubjectAt(int /*x*/, int /*y*/) const { return {}; }
    /// After Start: there is nothing to show, as the chart has told. Its page goes away again.
    virtual bool IsEmpty() const { return false; }
    /// It stays as it was built while the plan goes on; its page says when it is behind.
    virtual bool StaysAsBuilt() const { return false; }
    /// Starting anew forgets what the user has moved about.
    virtual bool HasMovedBoxes() const { return false; }

    /// The left mouse button goes down: what it begins to drag. With `links`, a link where it may be one.
    virtual Drag BeginDrag(int /*x*/, int /*y*/, bool /*links*/) { return Drag::None; }
    /// To there, with the picture drawn anew where it moved. None: the drag is over.
    virtual DragState DragTo(int /*x*/, int /*y*/) { return DragState::None; }
    /// The button is up.
    virtual std::optional<Wish> EndDrag() { return std::nullopt; }
    /// The drag is given up, and changes nothing from now on.
    virtual void CancelDrag() { EndDrag(); }
    /// What letting go here would do.
    virtual std::string DragTip() const { return {}; }
    /// A click on nothing that can be dragged: whether another link is selected now.
    virtual bool SelectAt(int /*x*/, int /*y*/) { return false; }
    virtual Vdependency* SelectedLink() const { return nullptr; }
    /// Lines from corner to corner, in front of the picture: the selected link, and a drag.
    virtual std::vector<Box> Marks() const { return {}; }
    /// Whether there was something to walk to or to move.
    virtual bool Press(Key /*key*/) { return false; }
    /// The box that keys stand on.
    virtual std::optional<Box> Cursor() const { return std::nullopt; }
    /// Of that box.
    virtual Subject SubjectAtCursor() const { return {}; }

    Vwindow& TheVwindow() { return vwindow_; }
    const Vwindow& TheVwindow() const { return vwindow_; }

  protected:
    Vwindow vwindow_;
};

}  // namespace vortan
