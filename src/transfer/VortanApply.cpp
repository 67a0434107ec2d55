// Reading of the marked texts.

#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <unordered_set>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "transfer/VortanParts.h"
#include "transfer/VortanSections.h"
#include "transfer/VortanText.h"

namespace vortan {

namespace {

/// Whether an import lost what an export has written besides: of a row whose text tells the same, nothing is
/// lost. What was done since, and by whom, is.
bool ToldOtherwise(const Loss& loss) {
    constexpr std::array kReasons = {"There are no tables of rates", "Plans are kept as journals",
                                     "Resources are levelled by the solve", "Work is duration times units",
                                     "Nobody works so little"};
    return std::find(kReasons.begin(), kReasons.end(), loss.why) != kReasons.end();
}

/// The shifts that the row of a resource names, as a visitor.
struct ShiftsWorked {
    std::set<const Vshift*>& shifts;
    template <class Field>
    void operator()(const char*, const Field&) const {}
    void operator()(const char*, const Journaled<Link<Vshift>>& field) const {
        for (int i = 0; i < field.Count(); ++i) shifts.insert(field.At(i).Get());
    }
};

bool ReadDates(std::string_view text, std::vector<DateTime>& dates) {
    for (const std::string_view each : SplitText(text, kJournalEnd)) {
        DateTime date;
        if (!ReadCode(each, date) || (!dates.empty() && date <= dates.back())) return false;
        dates.push_back(date);
    }
    return !dates.empty();
}

/// The 24 hours of a shift; false for what is none.
bool ReadMatrix(std::string_view code, std::vector<std::string>& hours) {
    if (code.empty()) return false;
    const std::string_view rest = code.substr(1);
    if (code.front() == 'L') {
        for (const std::string_view each : SplitText(rest, kJournalEnd)) hours.push_back(Unescaped(each));
        return hours.size() == Vshift::kHours;
    }
    std::string all;
    std::size_t count = 0;
    constexpr std::size_t kPeriods = std::size_t{Vshift::kHours} * Vshift::kPeriodsPerHour;
    for (const char c : rest) {
        if (c >= '0' && c <= '9') {
            count = std::min<std::size_t>(count * 10 + static_cast<std::size_t>(c - '0'), kPeriods + 1);
        } else {
            all.append(count, c);
            count = 0;
            if (all.size() > kPeriods) return false;
        }
    }
    if (code.front() != 'M' || all.size() != kPeriods) return false;
    for (std::size_t hour = 0; hour < Vshift::kHours; ++hour)
        hours.push_back(all.substr(hour * Vshift::kPeriodsPerHour, Vshift::kPeriodsPerHour));
    return true;
}

/// Sets what the texts say, from the outside in: templates and shifts, resources, projects, tasks.
class Applier {
  public:
    Applier(ImportedPlan& plan, Losses& losses)
        : plan_(plan), losses_(losses), workspace_(plan.projects.front().project->Owner()) {
        numbers_.task = [this](std::string_view code) { return FindTask(code); };
        numbers_.resource = [this](std::string_view code) { return FindNumbered(plan_.resourceOf, code); };
        numbers_.project = [this](std::string_view code) {
            std::int32_t uid = -1;
            if (ReadCode(code, uid) && uid == 0) return plan_.projects.front().project;
            return FindNumbered(plan_.subprojects, code);
        };
        numbers_.shift = [](std::string_view) -> Vshift* { return nullptr; };
    }

    void Run() {
        const Workspace::Quiet quiet(workspace_);
        for (const MAssignment& each : plan_.file->Assignments) assignments_[each.TaskUID].push_back(&each);
        const MTask* top = nullptr;
        for (const MTask& row : plan_.file->Tasks) {
            if (row.UID == 0) top = &row;
        }
        if (top && plan_.file->Title.empty()) plan_.projects.front().project->SetDescription("");
        if (const auto body = top ? Open(top->Text30, "Plan") : std::nullopt) {
            const Sections sections(*body);
            ApplyTemplates(sections);
            ApplyProject(sections, plan_.projects.front(), plan_.file->Name, plan_.file->Title);
        }
        for (const MResource& row : plan_.file->Resources) ApplyResource(row);
        for (auto& each : plan_.projects) {
            if (each.row) ApplyLink(each);
        }
        for (const MTask& row : plan_.file->Tasks) {
            if (row.UID != 0) ApplyTask(row);
        }
        DropShifts();
        losses_.RemoveIf([&](const Loss& loss) {
            if (moved_.contains(loss.object) && loss.what.starts_with("Resource ID")) return true;
            return whole_.contains(loss.object) && ToldOtherwise(loss);
        });
    }

  private:
    /// What the import has of a template of the text.
    struct Made {
        Vtemplate* made = nullptr;
        bool isNew = false;
        bool sameJournals = false;  ///< rows of values fit
        int current = 0;            ///< the journal in force when it was written
        std::vector<Vshift*> shifts;
    };

    std::optional<std::string_view> Open(const std::string& text, const std::string& object) {
        const auto body = OpenVortan(text);
        if (IsVortan(text) && !body)
            losses_.Add(object, "Its text for VORTAN", "it has been changed or cut",
                        "Read as any other row is");
        return body;
    }
    static std::string ObjectOf(const MResource& row) { return Numbered("Resource", row.ID, row.Name); }
    static std::string ObjectOf(const MTask& row) { return Numbered("Task", row.ID, row.Name); }
    static std::string Numbered(const char* what, std::int32_t id, const std::string& name) {
        return std::string(what) + " " + std::to_string(id) + (name.empty() ? "" : " " + name);
    }

    template <class T>
    static T* FindNumbered(const std::unordered_map<std::int32_t, T*>& numbers, std::string_view code) {
        std::int32_t uid = 0;
        if (!ReadCode(code, uid)) return nullptr;
        const auto at = numbers.find(uid);
        return at == numbers.end() ? nullptr : at->second;
    }
    /// By UID, or for one that was not exported by its number and project, where that is in memory.
    Link<Vtask> FindTask(std::string_view code) {
        if (code == "!") return Deleted();
        if (code.empty() || code.front() != 'x') return FindNumbered(plan_.tasks, code);
        const std::size_t colon = code.find(':');
        std::int32_t id = 0;
        if (colon == std::string_view::npos || !ReadCode(code.substr(1, colon - 1), id)) return nullptr;
        const Vproject* project = workspace_.ProjectList().Find(Unescaped(code.substr(colon + 1)));
        Vtask* task = project ? project->FindTask(id) : nullptr;
        if (!task) missing_ = true;
        return task;
    }
    /// A link to a task that is no more.
    Link<Vtask> Deleted() {
        auto* task = workspace_.NewVObject<Vtask>();
        const Link<Vtask> link = task;
        workspace_.FreeVobject(task);
        return link;
    }
    template <class T>
    void SetFields(T& object, std::string_view codes, const std::string& name, FieldSet others = {},
                   int onlyJournal = -1) {
        const FieldCodes fields(codes);
        FieldsIn visit(fields, numbers_, others, onlyJournal);
        object.ForEachFieldUsual(visit);
        if (visit.Damaged())
            losses_.Add(name, "A value in its text for VORTAN", "it is none that the field can have",
                        "Left out");
    }
    /// What a row shows otherwise than it is, if it still shows that.
    static void ApplyShown(const Sections& sections, char letter, const std::string& shown,
                           const std::function<void(const std::string&)>& set) {
        const auto exact = sections.Matching(letter, NameSum(shown));
        if (exact && !exact->empty()) set(Unescaped(exact->substr(1)));
    }
    static bool LoadJournals(JournalOwner& owner, std::string_view dateList, std::int32_t current) {
        std::vector<DateTime> dates;
        if (!ReadDates(dateList, dates)) return false;
        const auto count = static_cast<std::int32_t>(dates.size());
        owner.LoadJournals(count, dates);
        owner.SetCurrentIndex(std::clamp(current, 0, count - 1));
        return true;
    }

    void ApplyTemplates(const Sections& sections);
    void ApplyTemplate(const std::vector<std::string_view>& fields);
    void ApplyShift(const std::vector<std::string_view>& fields);
    void ApplyResource(const MResource& row);
    void MoveResource(const Sections& sections, Vresource& resource, const Made& to);
    void ApplyProject(const Sections& sections, ImportedPlan::Project& place, const std::string& shownName,
                      const std::string& shownText);
    void ApplyLink(ImportedPlan::Project& place);
    void ApplyTask(const MTask& row);
    void ApplyDependencies(const Sections& sections, const MTask& row, Vtask& task);
    bool ApplyAssignments(const Sections& sections, const MTask& row, Vtask& task);
    void DropShifts();

    ImportedPlan& plan_;
    Losses& losses_;
    Workspace& workspace_;
    Numbers numbers_;
    std::vector<Made> templates_;
    std::set<Vshift*> keptShifts_;
    std::unordered_set<std::string> moved_;  ///< resources that have their number in a further template
    std::unordered_set<std::string> whole_;  ///< objects of which the text tells everything
    bool missing_ = false;                   ///< a prerequisite outside of the file is not in memory
    std::unordered_map<std::int32_t, std::vector<const MAssignment*>> assignments_;
};

void Applier::ApplyTemplates(const Sections& sections) {
    for (const std::string_view each : sections.All('m')) ApplyTemplate(SplitText(each, kFieldEnd));
    for (const std::string_view each : sections.All('h')) ApplyShift(SplitText(each, kFieldEnd));
}

void Applier::ApplyTemplate(const std::vector<std::string_view>& fields) {
    std::int32_t place = 0, current = 0;
    if (fields.size() < 5 || !ReadCode(fields[0], place) || !ReadCode(fields[3], current)) return;
    if (place < 0 || static_cast<std::size_t>(place) != templates_.size()) return;
    Made& made = templates_.emplace_back();
    made.current = current;
    if (place > 0) {
        made.made = workspace_.NewVObject<Vtemplate>();
        plan_.moreTemplates.push_back({made.made, Unescaped(fields[1])});
    } else {
        made.made = plan_.resources;
        if (plan_.newTemplate) plan_.templateName = Unescaped(fields[1]);
    }
    made.isNew = place > 0 || plan_.newTemplate;
    if (!made.isNew) {
        std::vector<DateTime> dates;
        made.sameJournals = ReadDates(fields[4], dates) && dates == made.made->JournalDates();
        return;
    }
    made.made->SetDescription(Unescaped(fields[2]));
    made.sameJournals = LoadJournals(*made.made, fields[4], current);
    if (!made.sameJournals) made.made->AddJournal(plan_.importDate);
}

void Applier::ApplyShift(const std::vector<std::string_view>& fields) {
    std::int32_t place = 0;
    std::vector<std::string> hours;
    if (fields.size() < 7 || !ReadCode(fields[0], place) || place < 0) return;
    if (static_cast<std::size_t>(place) >= templates_.size() || !ReadMatrix(fields[6], hours)) return;
    Made& owner = templates_[static_cast<std::size_t>(place)];
    std::string name = Unescaped(fields[1]);
    const auto same = [&](const Vshift& shift) {
        for (int hour = 0; hour < Vshift::kHours; ++hour) {
            if (shift.Matrix(hour) != hours[static_cast<std::size_t>(hour)]) return false;
        }
        return true;
    };
    Vshift* shift = owner.made->ShiftList().Find(name);
    if (!owner.isNew) {
        // The active template stays as it is; without its shift a resource has the one of its calendar.
        owner.shifts.push_back(shift && same(*shift) ? shift : nullptr);
        return;
    }
    if (shift && !keptShifts_.contains(shift)) {
        // One that the import made from a calendar: it makes room.
        std::string free = name;
        while (owner.made->ShiftList().Find(free)) Workspace::FixNameConflict(free);
        shift->SetShiftName(free);
        shift = nullptr;
    }
    if (!shift || !same(*shift)) {
        while (owner.made->ShiftList().Find(name)) Workspace::FixNameConflict(name);
        shift = workspace_.NewVObject<Vshift>();
        shift->SetTemplate(owner.made);
        shift->SetShiftName(name);
        float multipliers[3] = {};
        for (std::size_t i = 0; i < 3; ++i) ReadCode(fields[2 + i], multipliers[i]);
        shift->SetBurdenedMultiplier(multipliers[0]);
        shift->SetOvertimeMultiplier(multipliers[1]);
        shift->SetOffDayMultiplier(multipliers[2]);
        shift->SetHolidayMultiplier(Unescaped(fields[5]));
        for (int hour = 0; hour < Vshift::kHours; ++hour)
            shift->SetMatrix(hour, hours[static_cast<std::size_t>(hour)]);
    }
    owner.shifts.push_back(shift);
    keptShifts_.insert(shift);
}

void Applier::ApplyResource(const MResource& row) {
    const auto body = Open(row.Text30, ObjectOf(row));
    const auto at = plan_.resourceOf.find(row.UID);
    if (!body || at == plan_.resourceOf.end() || templates_.empty()) return;
    Vresource& resource = *at->second;
    const Sections sections(*body);
    std::int32_t place = 0;
    if (const auto code = sections.Find('k')) ReadCode(*code, place);
    if (place < 0 || static_cast<std::size_t>(place) >= templates_.size()) return;
    const Made& owner = templates_[static_cast<std::size_t>(place)];
    // Whoever has been in the active template before stays as that has it.
    if (resource.Holder()) return;
    if (place > 0) {
        MoveResource(sections, resource, owner);
        moved_.insert(ObjectOf(row));
    }
    ApplyShown(sections, 'b', row.Name, [&](const std::string& exact) { resource.SetDescription(exact); });
    const int only = owner.sameJournals ? -1 : owner.current;
    const std::string name = ObjectOf(row);
    if (const auto own = sections.Matching('r', ResourceSum(row))) {
        SetFields(resource, *own, name, NotOfResource(), only);
        whole_.insert(name);
    }
    if (const auto days = sections.Matching('w', CalendarSum(BaseCalendar(*plan_.file, row)))) {
        Vshift* byCalendar = resource.Shift();
        numbers_.shift = [&](std::string_view code) -> Vshift* {
            std::int32_t number = 0;
            if (code.empty()) return nullptr;
            const bool known = ReadCode(code, number) && number >= 0 &&
                               static_cast<std::size_t>(number) < owner.shifts.size();
            Vshift* shift = known ? owner.shifts[static_cast<std::size_t>(number)] : nullptr;
            return shift ? shift : byCalendar;
        };
        SetFields(resource, *days, name, NotOfResourceDays(), only);
    }
    resource.FitJournals();
}

/// To a further template, under the number that it had there.
void Applier::MoveResource(const Sections& sections, Vresource& resource, const Made& to) {
    std::int32_t number = 0;
    if (const auto code = sections.Find('n')) ReadCode(*code, number);
    if (number <= 0 || to.made->FindResource(number)) number = to.made->HighestResourceID() + 1;
    resource.SetResourceID(0);
    resource.SetTemplate(to.made);
    resource.SetResourceID(number);
}

void Applier::ApplyProject(const Sections& sections, ImportedPlan::Project& place,
                           const std::string& shownName, const std::string& shownText) {
    ApplyShown(sections, 'b', shownName, [&](const std::string& exact) { place.name = exact; });
    ApplyShown(sections, 'c', shownText,
               [&](const std::string& exact) { place.project->SetDescription(exact); });
    const auto rest = sections.Find('p');
    if (!rest) return;
    const auto fields = SplitText(*rest, kFieldEnd);
    std::int32_t planIndex = 0, current = 0;
    if (fields.size() < 3 || !ReadCode(fields[0], planIndex) || !ReadCode(fields[1], current)) return;
    Vproject& project = *place.project;
    std::string own;
    for (std::size_t i = 3; i < fields.size(); ++i) (own += kFieldEnd) += fields[i];
    SetFields(project, own, "Project " + place.name);
    if (LoadJournals(project, fields[2], current))
        project.SetPlanIndex(std::clamp(planIndex, 0, project.NumJournals() - 1));
}

void Applier::ApplyLink(ImportedPlan::Project& place) {
    const auto body = OpenVortan(place.row->Text30);
    if (body) ApplyProject(Sections(*body), place, place.row->Name, place.row->Notes);
}

void Applier::ApplyTask(const MTask& row) {
    const auto body = Open(row.Text30, ObjectOf(row));
    const auto at = plan_.tasks.find(row.UID);
    if (!body || at == plan_.tasks.end()) return;
    Vtask& task = *at->second;
    const Sections sections(*body);
    const auto& shown = assignments_[row.UID];
    if (!task.Subproject())
        ApplyShown(sections, 'b', row.Name, [&](const std::string& exact) { task.SetDescription(exact); });
    if (const auto own = sections.Matching('t', EstimateSum(row, shown))) {
        const bool owns = plan_.subprojects.contains(row.UID);
        const bool shows = owns || FieldCodes(*own).At(kTaskSubproject);
        SetFields(task, *own, ObjectOf(row), NotOfTask(shows, owns));
    }
    ApplyDependencies(sections, row, task);
    if (!ApplyAssignments(sections, row, task)) return task.FitJournals();
    whole_.insert(ObjectOf(row));
    for (const MAssignment* each : shown) {
        if (each->Units > 0) continue;
        for (const MResource& resource : plan_.file->Resources) {
            if (resource.UID == each->ResourceUID) whole_.insert(ObjectOf(row) + ", " + ObjectOf(resource));
        }
    }
    task.FitJournals();
}

void Applier::ApplyDependencies(const Sections& sections, const MTask& row, Vtask& task) {
    const auto rest = sections.Matching('d', LinkSum(row));
    if (!rest) return;
    const std::vector<Vdependency*> old = task.DependencyList();
    workspace_.FreeVlist(old);
    for (const std::string_view item : SplitText(rest->empty() ? *rest : rest->substr(1), kItemEnd)) {
        auto* dependency = workspace_.NewVObject<Vdependency>();
        dependency->SetTask(&task);
        missing_ = false;
        SetFields(*dependency, item, ObjectOf(row));
        dependency->FitJournals();
        if (missing_)
            losses_.Add(ObjectOf(row), "A prerequisite in another project", "that project is not in memory",
                        "It waits for the date that the prerequisite gave");
    }
}

bool Applier::ApplyAssignments(const Sections& sections, const MTask& row, Vtask& task) {
    const auto& shown = assignments_[row.UID];
    const auto rest = sections.Matching('a', AssignmentSum(shown));
    if (!rest) return false;
    const std::vector<Vassignment*> old = task.AssignmentList();
    workspace_.FreeVlist(old);
    for (const std::string_view item : SplitText(rest->empty() ? *rest : rest->substr(1), kItemEnd)) {
        auto* assignment = workspace_.NewVObject<Vassignment>();
        assignment->SetTask(&task);
        SetFields(*assignment, item, ObjectOf(row));
        assignment->FitJournals();
    }
    return true;
}

/// The shifts that the import made from calendars, where nobody works them any more.
void Applier::DropShifts() {
    for (const Made& owner : templates_) {
        if (!owner.isNew || owner.shifts.empty()) continue;
        std::set<const Vshift*> worked(keptShifts_.begin(), keptShifts_.end());
        for (const Vresource* resource : owner.made->ResourceList())
            resource->ForEachField(ShiftsWorked{worked});
        const std::vector<Vshift*> all(owner.made->ShiftList().begin(), owner.made->ShiftList().end());
        for (Vshift* shift : all) {
            if (!worked.contains(shift)) workspace_.FreeVobject(shift);
        }
    }
}

}  // namespace

void ApplyVortan(ImportedPlan& plan, Losses& losses) {
    if (!plan.projects.empty()) Applier(plan, losses).Run();
}

}  // namespace vortan
