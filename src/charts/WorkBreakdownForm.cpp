#include "charts/WorkBreakdownForm.h"

#include <algorithm>

#include "charts/PageHeader.h"
#include "model/ErrTrap.h"
#include "model/NumberText.h"
#include "model/ValueText.h"

namespace vortan {
namespace {

constexpr const char* kPrompt =
    "At least one subproject contains another subproject.  By default, VORTAN will expand to only three "
    "levels, "
    "which means that any subprojects within subprojects will not be expanded.\r\n\r\n"
    "(To change the number of levels after answering this question, you must close the window and then "
    "request "
    "another work breakdown structure.)\r\n\r\n"
    "How many levels do you wish to expand?";
constexpr int kFootLines = 4;

std::string Dates(DateTime start, DateTime finish, DateTime lateFinish) {
    return "\nStart: " + FormatDate(start) + "\nFinish: " + FormatDate(finish) +
           "\nSlack: " + FormatDuration(DaysBetween(finish, lateFinish), true);
}

}  // namespace

void WorkBreakdownForm::Start() {
    const Section section("WorkBreakdown:Start");
    LayOut();
}

std::string WorkBreakdownForm::Caption() const {
    return "Work Breakdown Structure for " + GetPageHeader(workspace_);
}

void WorkBreakdownForm::LayOut() {
    const Section section("WorkBreakdown:Vwindow_RedoLayout");
    workspace_.ThePlatform().StatusMessage("Building work breakdown structure");
    vwindow_.ClearLayout();
    vwindow_.PageFoot = kFootLines * vwindow_.TextHeight();
    vwindow_.EndLayout(0, 0);
}

void WorkBreakdownForm::Draw() {
    const Section section("WorkBreakdown:Vwindow_RedoGraphics");
    const int cell = vwindow_.GridStep();
    const auto wholeCells = [cell](int size) { return std::max(size / cell, 1) * cell; };
    const WorkBreakdownSheet sheet{wholeCells(vwindow_.ThePage().width),
                                   wholeCells(vwindow_.ThePage().height - vwindow_.PageFoot),
                                   vwindow_.Metrics()};
    data_ = {};
    if (Vproject* project = workspace_.ThisProject())
        data_ = BuildWorkBreakdown(*project, sheet, levelLimit_, [this] { return PromptForLevelLimit(); });

    const double width = vwindow_.TextWidth("X"), height = vwindow_.TextHeight();
    for (const WorkBreakdown::Stroke& line : data_.strokes)
        vwindow_.DrawLine(line.x1, line.y1, line.x2, line.y2);
    for (const WorkBreakdown::Text& box : data_.boxes) {
        const int right = box.x + box.width, bottom = box.y + box.height;
        vwindow_.DrawRect(box.x + 0.25 * width, box.y + 0.25 * height, right + 0.25 * width,
                          bottom + 0.25 * height, kBlack, kBlack);
        vwindow_.DrawRect(box.x, box.y, right, bottom, kBlack, kWhite);
        vwindow_.DrawText(box.x + 0.5 * width, box.y, box.text);
    }
    for (const WorkBreakdown::Text& line : data_.lines) vwindow_.DrawText(line.x, line.y, line.text);
    vwindow_.EndGraphics();
    workspace_.ThePlatform().StatusMessage("");
}

std::int32_t WorkBreakdownForm::PromptForLevelLimit() const {
    if (levels_) return *levels_;
    return ScanInt32(workspace_.ThePlatform().InputBox(kPrompt, "Enter Number of Levels", "3").text);
}

const WorkBreakdown::Text* WorkBreakdownForm::TextAt(int x, int y) const {
    for (const WorkBreakdown::Text& box : data_.boxes)
        if (x >= box.x && x <= box.x + box.width && y >= box.y && y <= box.y + box.height) return &box;
    for (const WorkBreakdown::Text& line : data_.lines) {
        if (y >= line.y && y <= line.y + vwindow_.TextHeight() && x >= line.x &&
            x <= line.x + vwindow_.TextWidth(line.text))
            return &line;
    }
    return nullptr;
}

std::string WorkBreakdownForm::TipAt(int x, int y) const {
    const WorkBreakdown::Text* text = TextAt(x, y);
    if (!text) return {};
    if (const Vtask* task = text->task.Get())
        return text->text + Dates(task->EarlyStart(), task->EarlyFinish(), task->LateFinish());
    if (const Vproject* project = text->project.Get())
        return text->text + Dates(project->EarlyStart(), project->EarlyFinish(), project->LateFinish());
    return text->text;
}

ChartForm::Subject WorkBreakdownForm::SubjectAt(int x, int y) const {
    const WorkBreakdown::Text* text = TextAt(x, y);
    return {text ? text->task.Get() : nullptr};
}

}  // namespace vortan
