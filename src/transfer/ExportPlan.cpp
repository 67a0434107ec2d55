#include <algorithm>
#include <unordered_set>

#include "model/ErrTrap.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "transfer/CustomFields.h"
#include "transfer/PlanExport.h"
#include "transfer/VortanParts.h"

namespace vortan {

namespace {

constexpr std::size_t kLongestText = kTextLength * kTextFields;

}  // namespace

bool Transfer::ExportToMSProject(const std::string& fileName) {
    const Section section("Transfer:ExportToMSProject");
    Vproject* top = workspace_.ThisProject();
    losses_.Clear();
    if (!top) {
        workspace_.ThisProjectSet();
        return false;
    }
    bool written = false;
    PlanExport work(*this);
    Steps steps;
    steps.Do([&] {
        try {
            const MProject& file = work.Run(*top);
            transferMessage_ = "Writing " + fileName;
            written = WriteMspdi(workspace_.ThePlatform(), file, fileName,
                                 [this](double done) { return ShowPart(done); });
        } catch (const Cancel&) {
            written = false;
        }
    });
    workspace_.ThePlatform().StatusMessage("");
    steps.End();
    if (!written) return false;
    if (losses_.Empty()) {
        for (Vproject* project : work.Projects()) project->SetDirty(false);
        for (Vtemplate* each : work.Templates()) each->SetDirty(false);
    } else if (ShowLosses) {
        ShowLosses(losses_, false, fileName);
    }
    return true;
}

const MProject& PlanExport::Run(Vproject& top) {
    plan_.file = &file_;
    plan_.solved = workspace_.Solver() && workspace_.Mode() == SolveMode::Idle;
    file_.Name = ShownName(top.ProjectName());
    file_.Title = ShownName(top.Description());
    file_.CurrencySymbol = workspace_.ThePlatform().CurrencySymbol();
    MTask& row = file_.Tasks.emplace_back();
    row.Name = file_.Name;
    row.OutlineLevel = 0;
    row.WBS = "0";
    row.Summary = true;
    row.Type = 1;
    rows_.emplace_back();
    plan_.projects.emplace(&top, 0);
    ExportProject(top, 1, 0);
    ExportResources();
    ExportDependencies();
    ExportAssignments();
    ExportDurations();
    ExportTexts();
    TellWhatStays();
    return file_;
}

void PlanExport::ExportProject(Vproject& project, int level, std::size_t parent) {
    workspace_.ThePlatform().StatusMessage("Exporting " + project.BuildNodeText());
    projects_.push_back(&project);
    int place = 0;
    for (Vtask* task : project.TaskList()) {
        Vproject* subproject = task->Subproject();
        MTask& row = file_.Tasks.emplace_back();
        const std::size_t at = rows_.size();
        row.UID = row.ID = static_cast<std::int32_t>(at);
        row.OutlineLevel = level;
        row.WBS = (level > 1 ? FileRow(parent).WBS + "." : "") + std::to_string(++place);
        row.Name = ShownName(subproject ? subproject->ProjectName() : task->Description());
        if (subproject) row.Notes = ShownNotes(subproject->Description());
        row.Type = 1;  // durations are fixed: they are those of the solution
        const bool owns = subproject && plan_.projects.emplace(subproject, row.UID).second;
        row.Summary = owns;
        row.Active = owns || task->Include();
        rows_.push_back({task, owns, parent});
        rowOf_.emplace(task, at);
        plan_.tasks.emplace(task, row.UID);
        if (owns) {
            ExportProject(*subproject, level + 1, at);
        } else {
            ExportTask(*task, row);
            if (subproject)
                Lose(*task, "A second task that stands for project " + subproject->ProjectName(),
                     "a project stands in one place of the outline", "Written as a plain task");
        }
    }
}

void PlanExport::ExportTask(const Vtask& task, MTask& row) {
    row.FixedCost = task.MaterialCost().ToDouble();
    row.Number1 = task.EffortUnits();
}

void PlanExport::ExportTexts() {
    assignments_.resize(rows_.size());
    for (std::size_t at = 1; at < rows_.size(); ++at) {
        for (std::size_t i = assignmentRanges_[at].first; i < assignmentRanges_[at].second; ++i)
            assignments_[at].push_back(&file_.Assignments[i]);
    }
    for (std::size_t at = 1; at < rows_.size(); ++at) {
        const Vtask& task = *rows_[at].task;
        std::string& text = FileRow(at).Text30;
        text = EncodeTask(plan_, FileRow(at), task, rows_[at].ownsSubproject, assignments_[at]);
        if (text.size() > kLongestText)
            Lose(task, "Its text of " + std::to_string(text.size()) + " characters for VORTAN",
                 "text fields of that program end at 255, ten of which are used",
                 "Written whole, but cut if that program saves the file");
    }
    std::string& text = FileRow(0).Text30;
    text = EncodeTop(plan_, FileRow(0), *projects_.front());
    if (text.size() > kLongestText)
        losses_.Add("Project " + projects_.front()->ProjectName(),
                    "Its text of " + std::to_string(text.size()) + " characters for VORTAN, with all shifts",
                    "text fields of that program end at 255, ten of which are used",
                    "Written whole, but cut if that program saves the file");
}

/// What is in memory, or in the plan, and goes into no file of that program.
void PlanExport::TellWhatStays() {
    const std::unordered_set<const Vproject*> written(projects_.begin(), projects_.end());
    for (const Vproject* project : workspace_.ProjectList()) {
        if (!written.contains(project))
            losses_.Add("Project " + project->ProjectName(), "All of it",
                        "an export writes the active project and the subprojects below it", "Left out");
    }
    const auto secret = [this](const std::string& object, const auto& owner) {
        if (!owner.ViewPassword().empty() || !owner.ModifyPassword().empty())
            losses_.Add(object, "Its passwords", "the file would show them to anybody", "Left out");
    };
    for (const Vproject* project : projects_) secret("Project " + project->ProjectName(), *project);
    for (const Vtemplate* owner : templates_) secret("Template " + owner->TemplateName(), *owner);
    for (const Vtemplate* owner : workspace_.TemplateList()) {
        if (std::find(templates_.begin(), templates_.end(), owner) == templates_.end())
            losses_.Add("Template " + owner->TemplateName(), "All of it",
                        "it is not the active one, and no task wants its resources", "Left out");
    }
    if (!plan_.solved)
        losses_.Add("Plan", "Dates", "the plan is not solved", "Written as they were found last");
}

std::string PlanExport::ObjectText(const Vtask& task) const {
    const std::string project =
        task.Project() == projects_.front() ? "" : " of project " + task.Project()->ProjectName();
    return "Task " + std::to_string(task.TaskID()) + " " + ShownName(task.Description()) + project;
}

void PlanExport::Lose(const Vtask& task, const std::string& what, const std::string& why,
                      const std::string& instead) {
    losses_.Add(ObjectText(task), what, why, instead);
}

}  // namespace vortan
