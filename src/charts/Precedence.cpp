#include "charts/Precedence.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "model/Rounding.h"
#include "model/ValueText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "solve/Solver.h"

namespace vortan {
namespace {

using Box = Precedence::Box;
using Places = std::vector<std::int32_t>;

constexpr int kLeastRows = 5;

std::size_t Index(std::int32_t number) {
    return static_cast<std::size_t>(number);
}

/// Rows of one column, and the next one from a given row down that is not taken.
class FreeRows {
  public:
    void Take(int row) { next_.emplace(row, row + 1); }
    int From(int row) {
        int end = row;
        for (auto at = next_.find(end); at != next_.end(); at = next_.find(end)) end = at->second;
        // Whoever asks again jumps there.
        while (row != end) row = std::exchange(next_[row], end);
        return end;
    }

  private:
    std::unordered_map<int, int> next_;
};

class Builder {
  public:
    Builder(const Workspace& workspace, const Solver& solver)
        : project_(workspace.ThisProject()), solver_(solver), arrows_(solver.Arrows()) {}

    Precedence Build() {
        BuildIncludeList();
        AssignPositions();
        SeparateBoxes();
        MoveAllBelowZero();
        std::sort(made_.links.begin(), made_.links.end());
        made_.links.erase(std::unique(made_.links.begin(), made_.links.end()), made_.links.end());
        return std::move(made_);
    }

  private:
    bool SliceInThisProject(std::int32_t slice) {
        const Vtask* task = slices_[Index(slice)].task;
        const Vproject* project = task ? task->Project() : nullptr;
        if (!project || !project_) return false;
        const auto [known, isNew] = within_.emplace(project, false);
        if (isNew) known->second = project->DescendsFrom(project_);
        return known->second;
    }

    bool IncludeSlice(std::int32_t slice) {
        const auto isOurs = [this](const SliceArrow& arrow) { return SliceInThisProject(arrow.slice); };
        const auto before = arrows_.BackwardList(slice), behind = arrows_.ForwardList(slice);
        return SliceInThisProject(slice) || std::any_of(before.begin(), before.end(), isOurs) ||
               std::any_of(behind.begin(), behind.end(), isOurs);
    }

    void BuildIncludeList() {
        for (std::int32_t i = 0; i < solver_.SliceCount(); ++i) slices_.push_back(solver_.Slice(i));
        boxOf_.assign(slices_.size(), -1);
        for (std::int32_t i = 0; i < solver_.SliceCount(); ++i) {
            const Vtask* task = slices_[Index(i)].task;
            // The slices of a subproject stand for its task.
            if (task && !task->Subproject() && IncludeSlice(i)) AddBox(i);
        }
    }

    void AddBox(std::int32_t slice) {
        const auto place = static_cast<std::int32_t>(made_.boxes.size());
        boxOf_[Index(slice)] = place;
        Box box = MakeBox(slice);
        before_.emplace_back();
        for (const SliceArrow& arrow : arrows_.BackwardList(slice)) {
            const std::int32_t other = boxOf_[Index(arrow.slice)];
            if (other < 0) continue;
            before_.back().push_back(other);
            made_.links.emplace_back(other, place);
            box.col = std::max(box.col, made_.boxes[Index(other)].col + 1);
        }
        if (box.task->Project() != project_) made_.showProject = true;
        CountColumn(box.col);
        made_.boxes.push_back(std::move(box));
    }

    Box MakeBox(std::int32_t slice) const {
        const Vslice& view = slices_[Index(slice)];
        Box box;
        box.task = view.task;
        box.taskID = view.task->TaskID();
        box.title = view.task->BuildNodeText();
        if (const Vproject* project = view.task->Project()) {
            box.projectName = project->ProjectName();
            box.project = project->BuildNodeText();
        }
        box.fromPercent = view.fromPercent;
        box.toPercent = view.toPercent;
        if (view.fromPercent != 0 || view.toPercent != 100)
            box.title +=
                " (" + std::to_string(view.fromPercent) + "%-" + std::to_string(view.toPercent) + "%)";
        box.earlyStart = view.earlyStart;
        box.earlyFinish = view.earlyFinish;
        box.lateStart = view.lateStart;
        box.lateFinish = view.lateFinish;
        box.why = WhyItStarts(slice);
        return box;
    }

    /// What lets a slice start last: one before it, or a date set for its task.
    std::string WhyItStarts(std::int32_t slice) const {
        const Vslice& view = slices_[Index(slice)];
        const SliceArrow* last = nullptr;
        DateTime when;
        for (const SliceArrow& arrow : arrows_.BackwardList(slice)) {
            const DateTime allows = AddDays(slices_[Index(arrow.slice)].earlyFinish, arrow.offset);
            if (last && allows < when) continue;
            last = &arrow;
            when = allows;
        }
        bool byDate = false;
        for (const Vdependency* each : view.task->DependencyList()) {
            if (!each->Include() || each->TaskRequired() || each->ToPercent() != view.fromPercent) continue;
            const DateTime date = AddDays(each->DepDate(), each->Offset());
            if (!(date > when)) continue;
            byDate = true;
            when = date;
        }
        if (byDate) return "Starts by the date set for it";
        if (!last) return "Nothing before it holds it back";
        const Vslice& before = slices_[Index(last->slice)];
        std::string event = "a deleted task";
        if (before.task == view.task) {
            event = "the part before it";
        } else if (before.task) {
            event = before.task->BuildNodeText();
            if (before.toPercent < 100) event += " at " + std::to_string(before.toPercent) + "%";
        }
        return "Starts after " + event +
               (last->offset != 0 ? " and " + FormatDuration(last->offset, true) : "");
    }

    /// Runs of boxes in the rightmost column as they follow each other; the first counts one too many.
    void CountColumn(int col) {
        if (made_.boxes.empty()) {
            column_ = col;
            run_ = 1;
        }
        if (col == column_) {
            maxColumn_ = std::max(maxColumn_, ++run_);
        } else {
            column_ = col;
            run_ = 1;
        }
    }

    void AssignPositions() {
        maxColumn_ = std::max(2 * maxColumn_ - 1, kLeastRows);
        int column = 0;
        Places batch;
        for (std::int32_t place = 0; Index(place) < made_.boxes.size(); ++place) {
            if (made_.boxes[Index(place)].col > column) {
                AssignThisColumn(batch);
                batch.clear();
                column = made_.boxes[Index(place)].col;
            }
            batch.push_back(place);
        }
        AssignThisColumn(batch);
    }

    void AssignThisColumn(const Places& batch) {
        std::vector<std::pair<double, std::int32_t>> means;
        for (const std::int32_t place : batch) {
            const Places& before = before_[Index(place)];
            double sum = 0;
            for (const std::int32_t other : before) sum += made_.boxes[Index(other)].row;
            means.emplace_back(before.empty() ? 0 : sum / static_cast<double>(before.size()), place);
        }
        std::sort(means.begin(), means.end());
        int row = (maxColumn_ + 1) / 2 - static_cast<int>(batch.size());
        for (const auto& [mean, place] : means) {
            made_.boxes[Index(place)].row = row;
            row += 2;
        }
    }

    /// Batches overlap when a box stands further left than those before it in solve order: of boxes in one
    /// place the first one stays.
    void SeparateBoxes() {
        std::vector<Places> columns(Index(made_.Columns()));
        for (std::int32_t place = 0; Index(place) < made_.boxes.size(); ++place)
            columns[Index(made_.boxes[Index(place)].col)].push_back(place);
        for (const Places& column : columns) {
            FreeRows rows;
            std::unordered_set<int> held;
            for (const std::int32_t place : column) rows.Take(made_.boxes[Index(place)].row);
            for (const std::int32_t place : column) {
                int& row = made_.boxes[Index(place)].row;
                if (held.insert(row).second) continue;
                row = rows.From(row);
                rows.Take(row);
                held.insert(row);
            }
        }
    }

    void MoveAllBelowZero() {
        int top = 0;
        for (const Box& box : made_.boxes) top = std::min(top, box.row);
        for (Box& box : made_.boxes) box.row -= top;
    }

    const Vproject* project_;
    const Solver& solver_;
    SliceArrows arrows_;
    Precedence made_;
    std::vector<Vslice> slices_;
    Places boxOf_;                ///< by slice, -1 for none
    std::vector<Places> before_;  ///< by box: those that it waits for, as often as arrows lead from them
    std::unordered_map<const Vproject*, bool> within_;
    int column_ = 0, run_ = 0, maxColumn_ = 0;
};

std::string Elapsed(double days, PrecedenceUnits units) {
    constexpr std::int64_t kMinutes[] = {1, 60, 1440, 10080, 43200};
    const std::int64_t unit = kMinutes[static_cast<std::size_t>(units)];
    const std::int64_t minutes = RoundToInt32(days * kMinutesPerDay);
    const std::int64_t tenths = (20 * std::abs(minutes) + unit) / (2 * unit);
    return (minutes < 0 && tenths > 0 ? "-" : "") + std::to_string(tenths / 10) + "." +
           std::to_string(tenths % 10);
}

std::string Moment(DateTime when, PrecedenceStyle style) {
    if (style == PrecedenceStyle::Date) return FormatShortDate(when);
    DateParts time = ToParts(when);
    const DateParts dayZero = ToParts(DateTime());
    time.year = dayZero.year;
    time.month = dayZero.month;
    time.day = dayZero.day;
    return FormatShortDate(when) + "\r\n" + FormatDate(FromParts(time));
}

}  // namespace

int Precedence::Columns() const {
    int columns = 0;
    for (const Box& box : boxes) columns = std::max(columns, box.col + 1);
    return columns;
}

int Precedence::Rows() const {
    int rows = 0;
    for (const Box& box : boxes) rows = std::max(rows, box.row + 1);
    return rows;
}

Precedence BuildPrecedence(const Workspace& workspace, const Solver& solver) {
    return Builder(workspace, solver).Build();
}

std::vector<std::string> BoxTexts(const Precedence& precedence, std::size_t place, PrecedenceStyle style,
                                  PrecedenceUnits units) {
    if (style == PrecedenceStyle::Index) return {std::to_string(place + 1)};
    const Box& box = precedence.boxes[place];
    std::vector<std::string> texts;
    if (precedence.showProject) texts.push_back(box.project);
    texts.push_back(box.title);
    const DateTime first = precedence.boxes.front().earlyStart;
    const auto moment = [&](DateTime when) {
        texts.push_back(style == PrecedenceStyle::Elapsed ? Elapsed(DaysBetween(first, when), units)
                                                          : Moment(when, style));
    };
    moment(box.earlyStart);
    texts.push_back(Elapsed(DaysBetween(box.earlyStart, box.earlyFinish), units));
    moment(box.earlyFinish);
    moment(box.lateStart);
    texts.push_back(Elapsed(DaysBetween(box.earlyStart, box.lateStart), units));
    moment(box.lateFinish);
    return texts;
}

}  // namespace vortan
