// What the mouse does to the bars and arrows of GanttForm.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "charts/GanttForm.h"
#include "charts/Twips.h"
#include "model/ValueText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"

namespace vortan {
namespace {

constexpr int kNear = static_cast<int>(4 * kTwipsPerPixel);  // of an arrow; and what is not moved yet
constexpr int kEdge = static_cast<int>(6 * kTwipsPerPixel);  // of the start of a bar

}  // namespace

GanttForm::Bar GanttForm::BarNow(const Vtask& task, int row) const {
    return {vwindow_.DateToX(task.EarlyStart()), vwindow_.DateToX(task.EarlyFinish()), GetY(row, 3),
            GetY(row, 6)};
}

Vtask* GanttForm::BarAt(int x, int y) const {
    const int row = vwindow_.RowAt(y);
    if (row < 1 || row > static_cast<int>(rowTasks_.size())) return nullptr;
    Vtask* task = rowTasks_[static_cast<std::size_t>(row) - 1].Get();
    return task && task->Project() && Covers(BarNow(*task, row), x, y) ? task : nullptr;
}

/// The nearest quarter; `ofNone` for a bar without length.
int GanttForm::PercentAt(const Vtask& task, int x, int ofNone) const {
    const double x1 = vwindow_.DateToX(task.EarlyStart()), x2 = vwindow_.DateToX(task.EarlyFinish());
    if (x2 <= x1) return ofNone;
    return 25 * static_cast<int>(std::lround(4 * std::clamp((x - x1) / (x2 - x1), 0.0, 1.0)));
}

Vdependency* GanttForm::StartDate(const Vtask& task) {
    Vdependency* control = task.Subproject() ? nullptr : task.ControlDependency();
    const bool isDate = control && !control->TaskRequired() && !control->TaskRequiredDeleted();
    return isDate && control->ToPercent() == 0 ? control : nullptr;
}

ChartForm::Drag GanttForm::BeginDrag(int x, int y, bool /*links*/) {
    drag_ = {};
    const int row = vwindow_.RowAt(y);
    Vtask* task = BarAt(x, y);
    if (!task) {
        // Beside a start there is room to grab it.
        task = BarAt(x + kEdge, y);
        if (!task || !StartDate(*task)) return Drag::None;
    }
    const Bar bar = BarNow(*task, row);
    drag_ = {.kind = Drag::Link, .x1 = x, .y1 = y, .x2 = x, .y2 = y, .task = Link<Vtask>(task)};
    drag_.fromPercent = PercentAt(*task, x, 100);
    Vdependency* date = StartDate(*task);
    if (date && x - bar.x1 <= std::min(kEdge, std::max(0, bar.x2 - bar.x1) / 3)) {
        drag_.kind = Drag::Date;
        drag_.dependency = Link<Vdependency>(date);
        drag_.date = date->DepDate();
    }
    return drag_.kind;
}

ChartForm::DragState GanttForm::DragTo(int x, int y) {
    if (drag_.kind == Drag::None || !drag_.task.Get()) return DragState::None;
    drag_.x2 = x;
    drag_.y2 = y;
    drag_.moved |= std::abs(x - drag_.x1) > kNear || std::abs(y - drag_.y1) > kNear;
    if (!drag_.moved) return DragState::Still;
    if (drag_.kind == Drag::Date) {
        const Vdependency* date = drag_.dependency.Get();
        if (!date) return DragState::None;
        // The time of the day stays.
        const double days = std::round(DaysBetween(vwindow_.XToDate(drag_.x1), vwindow_.XToDate(x)));
        drag_.date = AddDays(date->DepDate(), days);
        return DragState::Moved;
    }
    Vtask* target = BarAt(x, y);
    drag_.target = Link<Vtask>(target);
    drag_.toPercent = target ? PercentAt(*target, x, 0) : 0;
    return DragState::Moved;
}

std::optional<ChartForm::Wish> GanttForm::EndDrag() {
    const Dragged ended = std::exchange(drag_, {});
    Vtask* task = ended.task.Get();
    if (ended.kind == Drag::None || !task) return std::nullopt;
    if (!ended.moved) return Wish{.task = task};
    if (ended.kind == Drag::Date) {
        Vdependency* date = ended.dependency.Get();
        if (!date || date->DepDate() == ended.date) return std::nullopt;
        return Wish{.task = task, .dependency = date, .date = ended.date};
    }
    Vtask* target = ended.target.Get();
    // Back to where it began, it is given up.
    if (!target || (target == task && ended.toPercent == ended.fromPercent)) return std::nullopt;
    return Wish{target, task, ended.fromPercent, ended.toPercent};
}

std::string GanttForm::DragTip() const {
    const Vtask* task = drag_.task.Get();
    if (!drag_.moved || !task) return {};
    if (drag_.kind == Drag::Date) {
        const Vdependency* date = drag_.dependency.Get();
        return date ? task->Description() + " not before " + FormatDate(AddDays(drag_.date, date->Offset()))
                    : "";
    }
    const Vtask* target = drag_.target.Get();
    if (target == task) return "A task cannot depend on itself.";
    return task->Description() + " " + std::to_string(drag_.fromPercent) + "% -> " +
           (target ? target->Description() + " " + std::to_string(drag_.toPercent) + "%" : "...");
}

std::vector<ChartForm::Box> GanttForm::LinesOf(const LinkPlace& place) {
    return {{place.x1, place.y1, place.x1, place.yMiddle},
            {place.x1, place.yMiddle, place.x2, place.yMiddle},
            {place.x2, place.yMiddle, place.x2, place.y2}};
}

Vdependency* GanttForm::LinkAt(int x, int y) const {
    const auto isNear = [x, y](int x1, int y1, int x2, int y2) {
        return x >= std::min(x1, x2) - kNear && x <= std::max(x1, x2) + kNear &&
               y >= std::min(y1, y2) - kNear && y <= std::max(y1, y2) + kNear;
    };
    for (auto place = links_.rbegin(); place != links_.rend(); ++place) {
        if (isNear(place->x1, place->y1, place->x1, place->yMiddle) ||
            isNear(place->x1, place->yMiddle, place->x2, place->yMiddle) ||
            isNear(place->x2, place->yMiddle, place->x2, place->y2)) {
            if (Vdependency* dependency = place->dependency.Get()) return dependency;
        }
    }
    return nullptr;
}

bool GanttForm::SelectAt(int x, int y) {
    Vdependency* before = selected_.Get();
    Vdependency* found = LinkAt(x, y);
    selected_ = Link<Vdependency>(found);
    return found != before;
}

Vdependency* GanttForm::SelectedLink() const {
    return selected_.Get();
}

std::vector<ChartForm::Box> GanttForm::Marks() const {
    std::vector<Box> lines;
    if (const Vdependency* selected = selected_.Get()) {
        for (const LinkPlace& place : links_) {
            if (place.dependency.Get() == selected) lines = LinesOf(place);
        }
    }
    if (!drag_.moved) return lines;
    if (drag_.kind == Drag::Link) lines.push_back({drag_.x1, drag_.y1, drag_.x2, drag_.y2});
    const Vdependency* date = drag_.dependency.Get();
    if (drag_.kind == Drag::Date && date) {
        const int x = vwindow_.DateToX(AddDays(drag_.date, date->Offset())), row = vwindow_.RowAt(drag_.y1);
        lines.push_back({x, GetY(row, 0), x, GetY(row, 9)});
    }
    return lines;
}

}  // namespace vortan
