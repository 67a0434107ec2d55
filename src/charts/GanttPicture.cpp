// What GanttForm draws over its grid. Within a row, from the top in ninths of a row of one line: 0 to 3 the
// latest time marker, 3 to 6 the plan bar, 4 to 6 the actual and projected bar over it, 6 to 8 the head of an
// arrow that leaves downwards, 8 the level run of an arrow.

#include <algorithm>

#include "charts/GanttForm.h"
#include "model/ErrTrap.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"

namespace vortan {

void GanttForm::Draw() {
    const Section section("Gantt:Vwindow_RedoGraphics");
    links_.clear();
    if (const Vproject* project = workspace_.ThisProject()) {
        projectSlack_ = DaysBetween(project->EarlyFinish(), project->LateFinish());
        vwindow_.DrawDateLine(project->Journal(), kBlue);
        BuildKey(*project);
        criticalRows_.assign(options_.criticalRed ? static_cast<std::size_t>(vwindow_.Rows()) : 0, false);
        // An arrow from the top of the chart can be red.
        if (!criticalRows_.empty()) criticalRows_[0] = true;
        int row = 0;
        for (const Vtask* task : taskCol_) {
            if (IncludeTask(*task)) DrawTaskBar(*task, ++row);
        }
        row = 0;
        for (const Vtask* task : taskCol_) {
            if (options_.markers && IncludeTask(*task)) DrawMarker(*task, ++row, project->PlanIndex());
        }
        for (const Vtask* task : taskCol_) {
            if (options_.arrows == Arrows::Control && IncludeTask(*task)) {
                if (Vdependency* control = task->ControlDependency()) DrawDependency(*control);
            } else if (options_.arrows == Arrows::All) {
                for (Vdependency* dependency : task->DependencyList()) {
                    if (dependency->Include()) DrawDependency(*dependency);
                }
            }
        }
    }
    vwindow_.AdjustColors = options_.adjustColors;
    vwindow_.EndGraphics();
    workspace_.ThePlatform().StatusMessage("");
}

bool GanttForm::HasPlan(const Vtask& task) {
    const std::int32_t plan = task.Project()->PlanIndex();
    return task.IncludeAt(plan) && task.EarlyFinishAt(plan).IsSet();
}

GanttForm::Bar GanttForm::PlanBar(const Vtask& task, int row) const {
    const std::int32_t plan = task.Project()->PlanIndex();
    return {vwindow_.DateToX(task.EarlyStartAt(plan)), vwindow_.DateToX(task.EarlyFinishAt(plan)),
            GetY(row, 3), GetY(row, 6)};
}

GanttForm::Bar GanttForm::CurrentBar(const Vtask& task, int row) const {
    return {vwindow_.DateToX(task.EarlyStart()), vwindow_.DateToX(task.EarlyFinish()), GetY(row, 4),
            GetY(row, 6)};
}

bool GanttForm::Covers(const Bar& bar, int x, int y) const {
    const int reach = DrawsAsRect(bar) ? 0 : bar.Height() / 2;
    return y >= bar.y1 && y <= bar.y2 && x >= bar.x1 - reach && x <= std::max(bar.x1, bar.x2) + reach;
}

void GanttForm::DrawTaskBar(const Vtask& task, int row) {
    Color border = kBlack;
    if (!criticalRows_.empty() && DaysBetween(task.EarlyFinish(), task.LateFinish()) == projectSlack_) {
        border = kRed;
        criticalRows_[static_cast<std::size_t>(row)] = true;
    }
    if (HasPlan(task)) {
        const Bar bar = PlanBar(task, row);
        if (DrawsAsRect(bar)) {
            vwindow_.DrawRect(bar.x1, bar.y1, bar.x2, bar.y2, border, kYellow);
        } else {
            DrawSymbol(bar.x1, bar, border, kYellow);
            if (bar.x1 < bar.x2) DrawSymbol(bar.x2, bar, border, kYellow);
            DrawLink(bar);
        }
    }
    if (task.Project()->PlanIndex() != task.Project()->CurrentIndex()) DrawCurrentBar(task, row, border);
}

void GanttForm::DrawCurrentBar(const Vtask& task, int row, Color border) {
    const int now = vwindow_.DateToX(task.Project()->Journal());
    const Bar bar = CurrentBar(task, row);
    if (!DrawsAsRect(bar)) {
        DrawSymbol(bar.x1, bar, border, bar.x1 <= now ? kBlack : kGreen);
        if (bar.x1 < bar.x2 && bar.x2 <= now) DrawSymbol(bar.x2, bar, border, kBlack);
        if (bar.x1 < bar.x2 && bar.x2 > now) DrawSymbol(bar.x2, bar, kBlack, kGreen);
        DrawLink(bar);
        return;
    }
    const int done = std::clamp(now, bar.x1, bar.x2);  // where black ends and green begins
    if (bar.x1 < done) vwindow_.DrawRect(bar.x1, bar.y1, done, bar.y2, border, kBlack);
    if (done < bar.x2) vwindow_.DrawRect(done, bar.y1, bar.x2, bar.y2, border, kGreen);
}

void GanttForm::DrawSymbol(double middle, const Bar& bar, Color border, Color fill) {
    const double half = bar.Height() / 2.0;
    vwindow_.DrawMilestone(middle - half, bar.y1, middle + half, bar.y2, border, fill);
}

void GanttForm::DrawLink(const Bar& bar) {
    const double half = bar.Height() / 2.0, y = (bar.y1 + bar.y2) / 2.0;
    if (bar.x1 + half < bar.x2 - half) vwindow_.DrawLine(bar.x1 + half, y, bar.x2 - half, y);
}

void GanttForm::DrawMarker(const Vtask& task, int row, std::int32_t planIndex) {
    // A task that the plan does not know has its latest finish in the present journal only.
    const bool inPlan = task.IncludeAt(planIndex);
    const DateTime finish = inPlan ? task.LateFinishAt(planIndex) : task.LateFinish();
    if (finish < startDate_ || finish > endDate_) return;
    const int top = GetY(row, 0), bottom = GetY(row, 3);
    const double x = vwindow_.DateToX(finish), half = (bottom - top) / 2.0;
    vwindow_.DrawTriangle(x - half, top, x + half, bottom, kRed, inPlan ? kRed : kWhite, Apex::Down);
}

void GanttForm::DrawDependency(Vdependency& dependency) {
    int row1 = FindRow(dependency.TaskRequired()), row2 = FindRow(dependency.Task());
    DateTime date1 = dependency.DepDate(), date2 = AddDays(date1, dependency.Offset());
    if (row1 == row2) return;
    if (row1 > row2) {
        std::swap(row1, row2);
        std::swap(date1, date2);
    }
    const bool overRows = row1 > 0 || options_.dateDeps == DateDeps::LineToTop;
    const int x2 = vwindow_.DateToX(date2), top = overRows ? GetY(row1, 6) : GetY(row2, 0);
    if (overRows || options_.dateDeps != DateDeps::Hidden) {
        links_.push_back({Link<Vdependency>(&dependency), overRows ? vwindow_.DateToX(date1) : x2, top,
                          overRows ? GetY((row1 + row2) / 2, 8) : top, x2, GetY(row2, 3)});
    }
    // Row 0: the dependency hangs on a date.
    if (row1 > 0) {
        DrawArrowBetweenRows(row1, date1, row2, date2);
    } else {
        DrawDateDependency(row1, date1, row2, date2);
    }
}

void GanttForm::DrawArrowBetweenRows(int row1, DateTime date1, int row2, DateTime date2) {
    const auto isCritical = [this](int row) { return criticalRows_[static_cast<std::size_t>(row)]; };
    const Color color = !criticalRows_.empty() && isCritical(row1) && isCritical(row2) ? kRed : kBlack;
    const int xA = vwindow_.DateToX(date1), xB = vwindow_.DateToX(date2);
    const int yA = GetY(row1, 6), yB = GetY(row2, 3), yM = GetY((row1 + row2) / 2, 8);
    vwindow_.DrawLine(xA, yA, xA, yM, color);
    vwindow_.DrawLine(xA, yM, xB, yM, color);
    vwindow_.DrawLine(xB, yM, xB, yB, color);
    DrawHead(xA, yA, GetY(row1, 8), color, Apex::Up);
    DrawHead(xB, GetY(row2, 1), yB, color, Apex::Down);
}

void GanttForm::DrawDateDependency(int row1, DateTime date1, int row2, DateTime date2) {
    if (options_.dateDeps == DateDeps::LineToTop) {
        DrawArrowBetweenRows(row1, date1, row2, date2);
        return;
    }
    const int x = vwindow_.DateToX(date2), bar = GetY(row2, 3);
    if (options_.dateDeps == DateDeps::Triangle) {
        const int top = GetY(row2, 1);
        vwindow_.DrawTriangle(x, top, x + (bar - top) / 2.0, bar, kBlack, kBlack, Apex::Right);
    } else if (options_.dateDeps == DateDeps::ShortArrow) {
        vwindow_.DrawLine(x, bar, x, GetY(row2, 0));
        DrawHead(x, GetY(row2, 0), GetY(row2, 2), kBlack, Apex::Up);
    }
}

void GanttForm::DrawHead(double x, double top, double bottom, Color color, Apex apex) {
    vwindow_.DrawTriangle(x - HeadWidth() / 2, top, x + HeadWidth() / 2, bottom, color, color, apex);
}

}  // namespace vortan
