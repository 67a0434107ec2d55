#include "charts/HistogramForm.h"

#include <algorithm>
#include <cstdio>

#include "charts/KeyColumns.h"
#include "charts/PlotAxis.h"
#include "charts/TextLines.h"
#include "model/Conventions.h"
#include "model/ErrTrap.h"
#include "model/ValueText.h"
#include "model/Vtemplate.h"

namespace vortan {
namespace {

constexpr Color kTooThin = 0xA0A0A0;
constexpr double kThinnestBar = 15;  // twips, a pixel
constexpr double kKeyLine = 1.25;    // of a line of text
constexpr std::size_t kTasksInTip = 5;

Color ColorOf(std::size_t row) {
    const auto i = static_cast<Color>(row + 1);
    const Color red = (i & 1) * 80 + 160, green = (i & 2) * 40 + 160, blue = (i & 4) * 20 + 160;
    return blue << 16 | green << 8 | red;
}

std::string HoursText(double hours) {
    char text[400];
    std::snprintf(text, sizeof text, "%.1f", hours);
    return LocalNumber(text);
}

std::string HoursText(std::int64_t tenths) {
    return HoursText(static_cast<double>(tenths) / 10);
}

/// With "..." where something is missing.
std::string KeyLabel(const std::string& label, int room, const TextMetrics& metrics) {
    if (metrics.TextWidth(label) <= room) return label;
    return std::string(FittingPart(label, room - metrics.TextWidth("..."), metrics)) + "...";
}

}  // namespace

HistogramForm::HistogramForm(Workspace& workspace, const Solver& solver, const TextMetrics& metrics)
    : ChartForm(Vwindow::Style::Time, metrics), workspace_(workspace), solver_(solver) {
    vwindow_.WideTimeColumns = true;
    vwindow_.WeekStart = TimeScale::WeekStart::Sunday;
}

void HistogramForm::Start() {
    const Section section("Histogram:Start");
    data_ = {};
    if (!workspace_.ThisTemplateSet()) return;
    DateTime start, end;
    GetDateRange(workspace_, start, end, true);
    vwindow_.SetDateRange(start, end);
}

std::string HistogramForm::Caption() const {
    const Vtemplate* from = workspace_.ThisTemplate();
    return "Histogram for template " + (from ? from->BuildNodeText() : "") + (filter_ ? " (filtered)" : "");
}

ChartForm::OptionsFrame HistogramForm::Frame() {
    return {"OptionsFrame",
            "Histogram options",
            {{Option::Kind::Check, "UseCrosshatchingCheck", "Use crosshatching", crosshatching_,
              [this](bool on) { crosshatching_ = on; }},
             {Option::Kind::Check, "ByDepartmentCheck", "Group by department", byDepartment_,
              [this](bool on) { byDepartment_ = on; }},
             {Option::Kind::Button, "FilterCommand", "Filter", false, [this](bool) {
                  if (FilterCommandClick) FilterCommandClick();
              }}}};
}

void HistogramForm::LayOut() {
    const Section section("Histogram:Vwindow_RedoLayout");
    workspace_.ThePlatform().StatusMessage("Building histogram");
    vwindow_.ClearLayout();
    vwindow_.AddColumn("Hours", Alignment::RightBottom);
    vwindow_.AddTimeColumns();
    built_ = false;
    vwindow_.EndLayout(1, 0);
}

void HistogramForm::Draw() {
    const Section section("Histogram:Vwindow_RedoGraphics");
    if (!built_) {
        Build();  // draws, when the rows are known
        return;
    }
    if (IsEmpty()) {
        workspace_.ThePlatform().MessageBox("There are no resources to display.", "Empty Histogram",
                                            BoxIcon::Warning, BoxButtons::Ok);
    } else {
        DrawBars();
        DrawKey();
        if (const Vtemplate* from = workspace_.ThisTemplate()) vwindow_.DrawDateLine(from->Journal(), kBlack);
    }
    vwindow_.EndGraphics();
    workspace_.ThePlatform().StatusMessage("");
}

void HistogramForm::Build() {
    built_ = true;
    data_ = {};
    if (const Vtemplate* from = workspace_.ThisTemplate())
        data_ = BuildHistogram(*from, solver_, vwindow_.Scale().Bounds(), byDepartment_, filter_);
    AddAxisRows(vwindow_, data_.maxHours, data_.increment, [](double value) { return HoursText(value); });
    FitKey();
    // A short key needs more than its lines: it begins two lines down.
    vwindow_.EndLayout(1, std::max(kKeyLine * keyRows_ + 1, keyRows_ + 2.0));
}

void HistogramForm::FitKey() {
    std::vector<int> widths;
    const int mark = vwindow_.TextWidth("XX = ");
    for (const auto& row : data_.rows) widths.push_back(mark + vwindow_.TextWidth(row.label));
    KeyColumns columns = FitKeyColumns(widths, vwindow_.TextWidth("X"), vwindow_.TextWidth("XX"),
                                       vwindow_.ColPos(vwindow_.Cols()));
    keyRows_ = columns.rows;
    keyLeft_ = std::move(columns.left);
}

double HistogramForm::Height(std::int64_t tenths) const {
    return AxisY(vwindow_, 0) - AxisY(vwindow_, static_cast<double>(tenths) / 10 / data_.increment);
}

void HistogramForm::DrawBar(std::int32_t period, std::size_t row, double top, double base) {
    const Hatch hatch = crosshatching_ ? static_cast<Hatch>((row + 1) % 7 + 1) : Hatch::Solid;
    vwindow_.DrawRect(vwindow_.ColPos(period + 1), top, vwindow_.ColPos(period + 2), base, kBlack,
                      ColorOf(row), hatch);
}

/// Bars that lie upon each other and are too thin to be anything but border are drawn as one.
void HistogramForm::DrawBars() {
    struct Stack {
        double top, thinFrom;
        int thin = 0;  ///< bars that wait to be drawn as one
        std::size_t thinRow = 0;
    };
    const double bottom = AxisY(vwindow_, 0);
    std::vector<Stack> stacks(data_.totals.size(), Stack{bottom, bottom});
    const auto drawThin = [&](std::int32_t period, Stack& stack) {
        if (stack.thin == 1) DrawBar(period, stack.thinRow, stack.top, stack.thinFrom);
        if (stack.thin > 1) {
            vwindow_.DrawRect(vwindow_.ColPos(period + 1), stack.top, vwindow_.ColPos(period + 2),
                              stack.thinFrom, kBlack, kTooThin);
        }
        stack.thin = 0;
    };
    for (std::size_t row = 0; row < data_.rows.size(); ++row) {
        for (const auto& [period, tenths] : data_.rows[row].cells) {
            Stack& stack = stacks[static_cast<std::size_t>(period)];
            const double height = Height(tenths), top = stack.top - height;
            if (height < kThinnestBar) {
                if (stack.thin++ == 0) {
                    stack.thinFrom = stack.top;
                    stack.thinRow = row;
                }
            } else {
                drawThin(period, stack);
                DrawBar(period, row, top, stack.top);
            }
            stack.top = top;
        }
    }
    for (std::size_t i = 0; i < stacks.size(); ++i) drawThin(static_cast<std::int32_t>(i), stacks[i]);
}

void HistogramForm::DrawKey() {
    const int letter = vwindow_.TextHeight(), base = vwindow_.RowPos(vwindow_.Rows() - 1);
    const auto perColumn = static_cast<std::size_t>(keyRows_);
    for (std::size_t row = 0; row < data_.rows.size(); ++row) {
        const double x = keyLeft_[row / perColumn];
        const double y = base + letter * (static_cast<double>(row % perColumn) + 2) * kKeyLine;
        const Hatch hatch = crosshatching_ ? static_cast<Hatch>((row + 1) % 7 + 1) : Hatch::Solid;
        vwindow_.DrawRect(x, y, x + letter, y + letter, kBlack, ColorOf(row), hatch);
        const double left = x + letter * 1.5;
        const auto room = static_cast<int>(vwindow_.ColPos(vwindow_.Cols()) - left);
        vwindow_.DrawText(left, y, KeyLabel(data_.rows[row].label, room, vwindow_.Metrics()));
    }
}

HistogramForm::Bar HistogramForm::BarAt(int x, int y) const {
    const int col = vwindow_.ColAt(x);
    if (IsEmpty() || !vwindow_.IsComplete() || col < 1 || y < vwindow_.RowPos(1)) return {};
    double top = AxisY(vwindow_, 0);
    if (y > top) return {};
    for (const auto& row : data_.rows) {
        const auto* cell = data_.FindCell(row, col - 1);
        if (!cell) continue;
        top -= Height(cell->tenths);
        if (y >= top) return {&row, col - 1};
    }
    return {};
}

std::string HistogramForm::TipAt(int x, int y) const {
    const Bar bar = BarAt(x, y);
    if (!bar.row) return {};
    const auto at = static_cast<std::size_t>(bar.period);
    const DateTime first(data_.bounds[at]), last(data_.bounds[at + 1] - 1);
    std::string tip = bar.row->label + "\n" + FormatShortDate(first) +
                      (first == last ? "" : " to " + FormatShortDate(last)) + "\n" +
                      HoursText(data_.FindCell(*bar.row, bar.period)->tenths) + " hours";

    const auto row = static_cast<std::int32_t>(bar.row - data_.rows.data());
    const auto [begin, end] =
        std::equal_range(data_.shares.begin(), data_.shares.end(), Histogram::Share{row, 0, {}, 0},
                         [](const auto& a, const auto& b) { return a.row < b.row; });
    std::vector<std::pair<const Vtask*, std::int64_t>> tasks;
    for (auto share = begin; share != end; ++share) {
        const Vtask* task = share->task.Get();
        if (share->period != bar.period || !task) continue;
        const auto known =
            std::find_if(tasks.begin(), tasks.end(), [&](const auto& each) { return each.first == task; });
        if (known == tasks.end()) {
            tasks.emplace_back(task, share->tenths);
        } else {
            known->second += share->tenths;
        }
    }
    std::stable_sort(tasks.begin(), tasks.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    for (std::size_t i = 0; i < tasks.size() && i < kTasksInTip; ++i) {
        const Vtask& task = *tasks[i].first;
        tip += "\n" + HoursText(tasks[i].second) + ": " +
               (task.Project() ? "(" + task.Project()->ProjectName() + ") " : "") + task.BuildNodeText();
    }
    if (tasks.size() > kTasksInTip)
        tip += "\nand " + std::to_string(tasks.size() - kTasksInTip) + " more tasks";
    return tip;
}

ChartForm::Subject HistogramForm::SubjectAt(int x, int y) const {
    const Bar bar = BarAt(x, y);
    return {nullptr, bar.row ? bar.row->resource.Get() : nullptr};
}

}  // namespace vortan
