#pragma once

#include <optional>
#include <string>
#include <vector>

#include "charts/ChartForm.h"
#include "charts/Precedence.h"
#include "model/Workspace.h"
#include "solve/Solver.h"

namespace vortan {

/// The precedence diagram: the boxes of Precedence, joined by lines. A box can be moved up and down, by the
/// mouse or by keys, until the chart is started anew.
class PrecedenceForm : public ChartForm {
  public:
    /// All three must outlive the form.
    PrecedenceForm(const Workspace& workspace, const Solver& solver, const TextMetrics& metrics)
        : ChartForm(Vwindow::Style::Free, metrics), workspace_(workspace), solver_(solver) {}

    std::string Name() const override { return "PrecedenceForm"; }
    void Start() override;
    std::string Caption() const override;
    OptionsFrame Frame() override;
    Answers AnswersTo() const override { return {.newThisProject = Answer::Unload}; }
    std::string TipAt(int x, int y) const override;
    Subject SubjectAt(int x, int y) const override { return SubjectOf(BoxAt(x, y)); }
    bool IsEmpty() const override { return data_.boxes.empty(); }
    bool StaysAsBuilt() const override { return true; }
    bool HasMovedBoxes() const override { return moved_; }
    /// From the right edge of a box, or with `links` from anywhere on it, a link from its finish to a start.
    Drag BeginDrag(int x, int y, bool links) override;
    DragState DragTo(int x, int y) override;
    std::optional<Wish> EndDrag() override;
    void CancelDrag() override { dragged_.reset(); }
    std::string DragTip() const override;
    std::vector<ChartForm::Box> Marks() const override;
    bool Press(Key key) override;
    std::optional<Box> Cursor() const override;
    Subject SubjectAtCursor() const override { return SubjectOf(cursor_); }

    // Of the next Start.
    void SetStyle(PrecedenceStyle style) { style_ = style; }
    void SetUnits(PrecedenceUnits units) { units_ = units; }
    PrecedenceStyle TheStyle() const { return style_; }
    PrecedenceUnits Units() const { return units_; }
    /// As of the last Start, with the rows as boxes were moved.
    const Precedence& Data() const { return data_; }

    /// The left or top edge of a box.
    int GetX(int col) const;
    int GetY(int row) const;

  private:
    using Place = std::optional<std::size_t>;
    /// A text in a box, from the corner of the box.
    struct Label {
        std::string text;
        double x, y;
    };
    /// A stretch between two edges, from the corner of the box.
    struct Room {
        double left, right, top;
    };

    void LayOut() override;
    void Draw() override;
    void ComputeBoxDimensions();
    void FitToPage();
    void MakeLabels();
    Room RoomOf(int position) const;
    double TableTop() const { return (2 - (lines_ & 1)) * lineHeight_; }
    void DrawLines();
    void DrawBox(std::size_t place);
    const Precedence::Box& At(std::size_t place) const { return data_.boxes[place]; }
    Box CornersOf(std::size_t place) const;
    Place BoxAt(int x, int y) const;
    std::string LinkTipAt(int x, int y) const;
    Subject SubjectOf(Place place) const;
    /// How many rows up or down the next place is that no box of its column holds; upwards, one more than
    /// there are if there is none.
    int RowsToMove(std::size_t place, bool up) const;
    /// Returns whether the others had to go down to make room.
    bool MoveBox(std::size_t place, bool up, int rows);
    Place Neighbour(std::size_t place, Key key) const;
    Place LinkedNeighbour(std::size_t place, bool left) const;

    const Workspace& workspace_;
    const Solver& solver_;
    PrecedenceStyle style_ = PrecedenceStyle::Index;
    PrecedenceUnits units_ = PrecedenceUnits::Days;
    Precedence data_;
    // Sizes of a box, twips.
    int lines_ = 1, boxCols_ = 1, boxWidth_ = 0, boxHeight_ = 0, lineHeight_ = 0, gap_ = 0;
    double pitch_ = 0;  ///< from column to column
    std::vector<Label> labels_;
    std::vector<std::size_t> firstLabel_;  ///< by box, and behind the last
    Place dragged_, cursor_;
    int mouseX_ = 0, mouseY_ = 0;
    bool linking_ = false;  ///< the drag is one of a link
    bool moved_ = false;
};

}  // namespace vortan
