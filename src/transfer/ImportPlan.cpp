#include "transfer/ImportPlan.h"

#include <algorithm>
#include <cmath>

#include "model/Characters.h"
#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "persist/Vfile.h"

namespace vortan {
namespace {

constexpr const char* kConnecting = "Connecting to Microsoft Project";

}  // namespace

FileWorkTime::FileWorkTime(const MProject& file)
    : minutesPerDay_(file.MinutesPerDay > 0 ? file.MinutesPerDay : 480),
      minutesPerWeek_(file.MinutesPerWeek >= minutesPerDay_ ? file.MinutesPerWeek : 5 * minutesPerDay_),
      daysPerMonth_(file.DaysPerMonth > 0 ? file.DaysPerMonth : 20) {}

double FileWorkTime::CalendarDays(double workingMinutes) const {
    const double minutes = std::abs(workingMinutes);
    const double weeks = std::floor(minutes / minutesPerWeek_);
    const double days = weeks * 7 + (minutes - weeks * minutesPerWeek_) / minutesPerDay_;
    return workingMinutes < 0 ? -days : days;
}

double FileWorkTime::HoursOf(std::int32_t rateFormat) const {
    constexpr double weeksPerYear = 52;
    switch (static_cast<MRateFormat>(rateFormat)) {
        case MRateFormat::Minute:
            return 1.0 / 60;
        case MRateFormat::Day:
            return minutesPerDay_ / 60;
        case MRateFormat::Week:
            return minutesPerWeek_ / 60;
        case MRateFormat::Month:
            return minutesPerDay_ * daysPerMonth_ / 60;
        case MRateFormat::Year:
            return minutesPerWeek_ * weeksPerYear / 60;
        default:
            return 1;
    }
}

PlanImport::PlanImport(Transfer& transfer, const MProject& file)
    : transfer_(transfer),
      workspace_(transfer.TheWorkspace()),
      losses_(transfer.TheLosses()),
      file_(file),
      time_(file) {
    plan_.file = &file;
}

/// Tasks go with their projects, and what is filed in a new template with that.
PlanImport::~PlanImport() {
    if (joined_) return;
    const Workspace::Quiet quiet(workspace_);
    for (auto& each : plan_.projects) workspace_.FreeVobject(each.project);
    for (auto& [uid, resource] : plan_.resourceOf)
        if (resource->ResourceID() == 0) workspace_.FreeVobject(resource);
    for (auto& [shift, name] : newShifts_)
        if (shift->ShiftName().empty()) workspace_.FreeVobject(shift);
    if (plan_.newTemplate) workspace_.FreeVobject(plan_.resources);
    for (auto& more : plan_.moreTemplates) workspace_.FreeVobject(more.made);
}

std::string PlanImport::Name(const MTask& task) {
    return "Task " + std::to_string(task.ID) + (task.Name.empty() ? "" : " " + task.Name);
}
std::string PlanImport::Name(const MResource& resource) {
    return "Resource " + std::to_string(resource.ID) + (resource.Name.empty() ? "" : " " + resource.Name);
}

bool PlanImport::AnyMarked() const {
    return std::any_of(file_.Tasks.begin(), file_.Tasks.end(),
                       [](const MTask& t) { return IsVortan(t.Text30); });
}

void PlanImport::CheckCancel() {
    if (transfer_.Cancelled && transfer_.Cancelled()) throw Transfer::Cancel{};
}

/// As a project that takes a name in use gets another one, without asking all those before again.
std::string PlanImport::FreeProjectName(const std::string& wanted) {
    std::string& name = lastName_.try_emplace(wanted, wanted).first->second;
    while (names_.contains(name) || workspace_.ProjectList().Find(name)) Workspace::FixNameConflict(name);
    names_.insert(name);
    return name;
}

void PlanImport::MakeTop() {
    plan_.importDate = DateTime(file_.ProjectStart.WholeDay());
    if (!file_.ProjectStart.IsSet()) {
        for (const MTask& task : file_.Tasks) {
            if (task.Start.IsSet() && (!plan_.importDate.IsSet() || task.Start < plan_.importDate))
                plan_.importDate = DateTime(task.Start.WholeDay());
        }
    }
    if (!plan_.importDate.IsSet()) plan_.importDate = DateTime(workspace_.ThePlatform().Now().WholeDay());
    auto* project = workspace_.NewVObject<Vproject>();
    plan_.projects.push_back({project, FreeProjectName(file_.Name), nullptr});
    project->SetDescription(file_.Title.empty() ? "imported from Microsoft Project" : file_.Title);
    project->AddJournal(plan_.importDate);
}

void PlanImport::FixJournals() {
    for (auto& each : plan_.projects) each.project->ChangeJournal(plan_.importDate);
}

void PlanImport::Build() {
    const Section section("Transfer:ImportMSProject");
    MakeTemplate();
    MakeTop();
    for (const MResource& each : file_.Resources) sources_.try_emplace(each.UID, &each);
    workspace_.ThePlatform().StatusMessage("Importing resources");
    ImportResources();
    ListCalendars();
    FindRows();
    NumberRows();
    ImportTasks();
    const auto plain =
        std::count_if(rows_.begin(), rows_.end(), [](const Row& row) { return !row.subproject; });
    transfer_.StartCount("Importing dependencies", plain);
    for (Row& row : rows_) {
        if (row.subproject) continue;
        ImportTaskDependencies(row);
        transfer_.IncrementCount();
    }
    for (std::size_t i = 0; i < rows_.size(); ++i) ImportLinksOfSummary(static_cast<std::int32_t>(i));
    transfer_.StartCount("Importing assignments", plain);
    for (Row& row : rows_) {
        if (row.subproject) continue;
        ImportTaskAssignments(row);
        transfer_.IncrementCount();
    }
    DropCircles();
    const bool marked = AnyMarked();
    if (!marked) AddLastTask();
    ListPlan();
    FixJournals();
    if (marked || std::any_of(file_.Resources.begin(), file_.Resources.end(),
                              [](const MResource& r) { return IsVortan(r.Text30); }))
        ApplyVortan(plan_, losses_);
}

/// Nothing here can fail, but for a number or name that somebody took meanwhile.
void PlanImport::Join() {
    joined_ = true;
    Vtemplate* resources = plan_.resources;
    std::unordered_set<const Vshift*> worked;
    for (const auto& [uid, resource] : plan_.resourceOf) worked.insert(resource->Shift());
    for (auto& [shift, name] : newShifts_) {
        if (!shift->ShiftName().empty()) continue;
        if (!worked.contains(shift)) {  // a marked text had a better one
            workspace_.FreeVobject(shift);
            continue;
        }
        while (resources->ShiftList().Find(name)) Workspace::FixNameConflict(name);
        shift->SetTemplate(resources);
        shift->SetShiftName(name);
    }
    const auto join = [this](Vtemplate* made, std::string name) {
        while (workspace_.TemplateList().Find(name)) Workspace::FixNameConflict(name);
        made->SetTemplateName(name);
    };
    if (plan_.newTemplate) {
        join(resources, plan_.templateName);
        workspace_.SetThisTemplate(resources);
    }
    for (auto& more : plan_.moreTemplates) join(more.made, more.name);
    for (const MResource& source : file_.Resources) {
        const auto id = newIDs_.find(source.UID);
        const auto made = plan_.resourceOf.find(source.UID);
        if (id == newIDs_.end() || made == plan_.resourceOf.end()) continue;
        if (made->second->ResourceID() == 0) made->second->SetResourceID(id->second);
    }
    for (auto& each : plan_.projects) each.project->SetProjectName(each.name);
    workspace_.SetThisProject(plan_.projects.front().project);
}

bool Transfer::ImportMSProject(const std::string& fileName) {
    const Section section("Transfer:ImportMSProject");
    losses_.Clear();
    Platform& platform = workspace_.ThePlatform();
    const Vtemplate* active = workspace_.ThisTemplate();
    if (active && AskForTemplate &&
        platform.MessageBox(
            "Resources will be imported in the active template (" + active->BuildNodeText() + ").",
            "Using Active Template", BoxIcon::Information, BoxButtons::OkCancel) != BoxAnswer::Ok)
        return false;
    bool done = false;
    Steps steps;
    steps.Do([&] { done = ImportFile(fileName); });
    steps.Do([&] { platform.StatusMessage(""); });
    steps.End();
    if (done && !losses_.Empty() && ShowLosses) ShowLosses(losses_, true, fileName);
    return done;
}

bool Transfer::ImportFile(const std::string& fileName) {
    workspace_.ThePlatform().StatusMessage(kConnecting);
    std::string bytes;
    if (const std::string wrong = ReadFileBytes(fileName, bytes); !wrong.empty()) {
        workspace_.ThePlatform().MessageBox(
            "Attempting the read from the file " + fileName + " caused the following error: \n" + wrong,
            "File Open Error", BoxIcon::Stop, BoxButtons::Ok);
        return false;
    }
    return ImportText(std::move(bytes), fileName);
}

bool Transfer::ImportText(std::string bytes, const std::string& fileName) {
    MProject file;
    StartCount(kConnecting, 1);
    if (!ReadMspdi(std::move(bytes), fileName, file, [this](double part) { return ShowPart(part); }))
        return false;
    if (file.Name.empty()) {
        const auto slash = fileName.rfind('/');
        file.Name = CleanFileStem(slash == std::string::npos ? fileName : fileName.substr(slash + 1));
    }
    try {
        PlanImport import(*this, file);
        import.Build();
        import.Join();
    } catch (const Cancel&) {
        losses_.Clear();
        return false;
    } catch (...) {
        losses_.Clear();
        throw;
    }
    return true;
}

std::string Transfer::CleanFileStem(const std::string& name) {
    const auto dot = name.rfind('.');
    const std::string stem = name.substr(0, dot);
    return stem.empty() ? "Plan" : stem;
}

}  // namespace vortan
