// What a user does with the boxes of the precedence diagram: points at them, walks them, moves them.

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "charts/PrecedenceForm.h"
#include "charts/Twips.h"
#include "model/ErrTrap.h"
#include "model/ValueText.h"

namespace vortan {
namespace {

constexpr double kNear = 3 * kTwipsPerPixel;
constexpr double kEdge = 8 * kTwipsPerPixel;  // of a box, where links begin

/// How far a point is from a line that goes from left to right.
double Distance(double x, double y, double x1, double y1, double x2, double y2) {
    const double width = x2 - x1, height = y2 - y1, square = width * width + height * height;
    const double part =
        square > 0 ? std::clamp(((x - x1) * width + (y - y1) * height) / square, 0.0, 1.0) : 0;
    return std::hypot(x1 + part * width - x, y1 + part * height - y);
}

}  // namespace

PrecedenceForm::Place PrecedenceForm::BoxAt(int x, int y) const {
    for (std::size_t place = 0; place < data_.boxes.size(); ++place) {
        const Box box = CornersOf(place);
        if (x >= box.x1 && x <= box.x2 && y >= box.y1 && y <= box.y2) return place;
    }
    return std::nullopt;
}

ChartForm::Subject PrecedenceForm::SubjectOf(Place place) const {
    return {place ? At(*place).task.Get() : nullptr};
}

std::string PrecedenceForm::TipAt(int x, int y) const {
    const Place place = BoxAt(x, y);
    if (!place) return LinkTipAt(x, y);
    const Precedence::Box& box = At(*place);
    return (data_.showProject ? box.project + "\n" : "") + box.title + "\nBox " + std::to_string(*place + 1) +
           "\nStart: " + FormatDate(box.earlyStart) + "\nFinish: " + FormatDate(box.earlyFinish) +
           "\nLatest finish: " + FormatDate(box.lateFinish) +
           "\nSlack: " + FormatDuration(DaysBetween(box.earlyStart, box.lateStart), true) + "\n" + box.why;
}

std::string PrecedenceForm::LinkTipAt(int x, int y) const {
    for (const auto& [from, to] : data_.links) {
        const auto a = static_cast<std::size_t>(from), b = static_cast<std::size_t>(to);
        const double x1 = GetX(At(a).col) + boxWidth_, x2 = GetX(At(b).col);
        if (x < x1 || x > x2) continue;
        const double middle = boxHeight_ / 2.0;
        if (Distance(x, y, x1, GetY(At(a).row) + middle, x2, GetY(At(b).row) + middle) > kNear) continue;
        const double room = DaysBetween(At(a).earlyFinish, At(b).earlyStart);
        return At(a).title + "\nis before\n" + At(b).title +
               "\nFrom finish to start: " + FormatDuration(room, true);
    }
    return {};
}

ChartForm::Drag PrecedenceForm::BeginDrag(int x, int y, bool links) {
    dragged_ = BoxAt(x, y);
    mouseX_ = x;
    mouseY_ = y;
    if (!dragged_) return Drag::None;
    cursor_ = dragged_;
    linking_ = links || CornersOf(*dragged_).x2 - x <= std::min(kEdge, boxWidth_ / 4.0);
    return linking_ ? Drag::Link : Drag::UpDown;
}

std::optional<ChartForm::Wish> PrecedenceForm::EndDrag() {
    const Place from = std::exchange(dragged_, std::nullopt);
    if (!from || !linking_) return std::nullopt;
    const Place to = BoxAt(mouseX_, mouseY_);
    Vtask *task = SubjectOf(to).task, *required = SubjectOf(from).task;
    if (!task || !required || to == from) return std::nullopt;
    return Wish{task, required};
}

std::string PrecedenceForm::DragTip() const {
    if (!dragged_ || !linking_) return {};
    const Place to = BoxAt(mouseX_, mouseY_);
    if (to == dragged_) return {};
    const Vtask *task = SubjectOf(to).task, *required = SubjectOf(dragged_).task;
    if (task && task == required) return "A task cannot depend on itself.";
    return (required ? required->Description() : "") + " 100% -> " +
           (task ? task->Description() + " 0%" : "...");
}

std::vector<ChartForm::Box> PrecedenceForm::Marks() const {
    if (!dragged_ || !linking_) return {};
    const Box from = CornersOf(*dragged_);
    return {{from.x2, (from.y1 + from.y2) / 2, mouseX_, mouseY_}};
}

/// A box goes on when the mouse has gone as far as the next free place is away.
ChartForm::DragState PrecedenceForm::DragTo(int x, int y) {
    const Section section("Precedence:Vwindow_MouseMove");
    if (!dragged_) return DragState::None;
    if (linking_) {
        mouseX_ = x;
        mouseY_ = y;
        return DragState::Moved;
    }
    if (std::abs(y - mouseY_) <= boxHeight_) return DragState::Still;
    const bool up = y < mouseY_;
    const int rows = RowsToMove(*dragged_, up);
    if (std::abs(y - mouseY_) <= rows * boxHeight_) return DragState::Still;
    mouseY_ += (up ? -rows : rows) * boxHeight_;
    if (!MoveBox(*dragged_, up, rows)) return DragState::Moved;
    dragged_.reset();
    return DragState::None;
}

int PrecedenceForm::RowsToMove(std::size_t place, bool up) const {
    std::vector<int> held;
    for (const Precedence::Box& box : data_.boxes)
        if (box.col == At(place).col) held.push_back(box.row);
    std::sort(held.begin(), held.end());
    int row = At(place).row, rows = 0;
    do {
        row += up ? -1 : 1;
        ++rows;
    } while (row >= 0 && std::binary_search(held.begin(), held.end(), row));
    return rows;
}

bool PrecedenceForm::MoveBox(std::size_t place, bool up, int rows) {
    int& row = data_.boxes[place].row;
    const bool noRoom = up && rows > row;
    if (noRoom) {
        for (Precedence::Box& box : data_.boxes) ++box.row;
        row = 0;
    } else {
        row += up ? -rows : rows;
    }
    moved_ = true;
    vwindow_.ClearLayout();
    vwindow_.EndLayout(0, 0);
    return noRoom;
}

bool PrecedenceForm::Press(Key key) {
    const Section section("Precedence:Press");
    if (data_.boxes.empty()) return false;
    if (!cursor_) {
        cursor_ = 0;
        return true;
    }
    if (key == Key::MoveUp || key == Key::MoveDown) {
        const bool up = key == Key::MoveUp;
        MoveBox(*cursor_, up, RowsToMove(*cursor_, up));
        return true;
    }
    const Place next = Neighbour(*cursor_, key);
    if (next) cursor_ = next;
    return next.has_value();
}

std::optional<ChartForm::Box> PrecedenceForm::Cursor() const {
    if (!cursor_) return std::nullopt;
    return CornersOf(*cursor_);
}

/// Up and down: the next one of the column. To the sides: of those that are linked the nearest in height,
/// without any the nearest of the next column.
PrecedenceForm::Place PrecedenceForm::Neighbour(std::size_t place, Key key) const {
    const Precedence::Box& here = At(place);
    const bool sideways = key == Key::Left || key == Key::Right;
    if (sideways) {
        if (const Place linked = LinkedNeighbour(place, key == Key::Left)) return linked;
    }
    const bool back = key == Key::Left || key == Key::Up;
    Place best;
    std::pair<int, int> least;
    for (std::size_t other = 0; other < data_.boxes.size(); ++other) {
        const int cols = At(other).col - here.col, rows = At(other).row - here.row;
        const int ahead = (back ? -1 : 1) * (sideways ? cols : rows);
        if (ahead <= 0 || (!sideways && cols != 0)) continue;
        const std::pair distance(ahead, std::abs(rows));
        if (best && distance >= least) continue;
        best = other;
        least = distance;
    }
    return best;
}

PrecedenceForm::Place PrecedenceForm::LinkedNeighbour(std::size_t place, bool left) const {
    Place best;
    int least = 0;
    for (const auto& [from, to] : data_.links) {
        const auto here = static_cast<std::size_t>(left ? to : from);
        const auto other = static_cast<std::size_t>(left ? from : to);
        const int rows = std::abs(At(other).row - At(place).row);
        if (here != place || (best && rows >= least)) continue;
        best = other;
        least = rows;
    }
    return best;
}

}  // namespace vortan
