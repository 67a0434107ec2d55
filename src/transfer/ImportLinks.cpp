// The import of links and constraints.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "model/Characters.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "transfer/ImportPlan.h"

namespace vortan {
namespace {

constexpr std::int64_t kMostSpread = 1'000'000;  // dependencies that stand for those of summary tasks

/// "+1.5", with as many digits as the number has and never an exponent; nothing for 0.
std::string SignedText(double days) {
    if (days == 0) return "";
    std::array<char, 400> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), days, std::chars_format::fixed);
    return (days > 0 ? "+" : "") + std::string(digits.data(), end.ptr);
}

std::string LagText(const MLink& link) {
    if (link.Lag == 0) return "";
    const MFormat format = PlainFormat(link.LagFormat);
    const std::string amount =
        IsPercent(format) ? PlainNumber(link.Lag) : PlainNumber(std::round(link.Lag / 6) / 10);
    const char* unit = IsPercent(format) ? "%" : IsElapsed(format) ? " elapsed hours" : " hours";
    return (link.Lag > 0 ? " +" : " ") + amount + unit;
}

std::string LinkText(const MLink& link, const std::string& predecessor) {
    return std::string("Link ") + LinkTypeText(link.Type) + LagText(link) + " from " + predecessor;
}

bool StartsFromStart(MLinkType type) {
    return type == MLinkType::SS || type == MLinkType::SF;
}
bool LeadsToStart(MLinkType type) {
    return type == MLinkType::FS || type == MLinkType::SS;
}

}  // namespace

void ParseDependency(Vdependency& dependency, const std::string& projectOfTask, std::string text,
                     const TaskKeys& keys) {
    std::string project = projectOfTask;
    const auto last = text.rfind('\\');
    if (last != std::string::npos) {
        constexpr std::size_t extension = 4;
        const auto before = last == 0 ? std::string::npos : text.rfind('\\', last - 1);
        const auto begin = before == std::string::npos ? 0 : before + 1;
        project = text.substr(begin, last - begin);
        project.resize(project.size() - std::min(project.size(), extension));
        text.erase(0, last + 1);
    }
    const auto found = keys.find(
        project + "\\" + std::to_string(ScanInt32(text.substr(0, text.find_first_not_of("0123456789")))));
    dependency.SetTaskRequired(found == keys.end() ? nullptr : found->second);
    auto sign = text.find('-');
    if (sign == std::string::npos) sign = text.find('+');
    if (sign != std::string::npos) {
        dependency.SetOffset(ScanNumber(std::string_view(text).substr(sign + (text[sign] == '+'))));
        text.erase(sign);
    }
    constexpr std::uint8_t start = 0, end = 100;
    if (text.ends_with("SS")) {
        dependency.SetFromPercent(start);
        dependency.SetToPercent(start);
    } else if (text.ends_with("SF")) {
        dependency.SetFromPercent(start);
        dependency.SetToPercent(end);
    } else if (text.ends_with("FF")) {
        dependency.SetFromPercent(end);
        dependency.SetToPercent(end);
    }
}

DateTime PlanImport::StartOf(const Row& row) const {
    const DateTime start =
        row.source->Manual && row.source->ManualStart.IsSet() ? row.source->ManualStart : row.source->Start;
    if (start.IsSet()) return start;
    return file_.ProjectStart.IsSet() ? file_.ProjectStart : plan_.importDate;
}

void PlanImport::AddDate(Vtask& task, DateTime date, std::uint8_t toPercent) {
    auto* dependency = workspace_.NewVObject<Vdependency>();
    dependency->SetTask(&task);
    dependency->SetDepDate(date);
    dependency->SetToPercent(toPercent);
}

/// What a constraint says of the task: "not before" can be said, of its start or its finish, "not after"
/// cannot.
void PlanImport::ImportTaskDependencies(Row& row) {
    const MTask& source = *row.source;
    if (VortanTellsLinks(source)) return;
    const bool dated = source.ConstraintDate.IsSet();
    const auto kind = static_cast<MConstraint>(source.ConstraintType);
    const bool startDate =
        dated && (kind == MConstraint::MustStartOn || kind == MConstraint::StartNoEarlierThan);
    const bool finishDate =
        dated && (kind == MConstraint::MustFinishOn || kind == MConstraint::FinishNoEarlierThan);
    if (dated && (kind == MConstraint::StartNoLaterThan || kind == MConstraint::FinishNoLaterThan))
        Lose(Name(source),
             (kind == MConstraint::StartNoLaterThan ? "Start no later than " : "Finish no later than ") +
                 FormatDate(source.ConstraintDate),
             "A date can only say not before", "Left out");
    std::vector<Vdependency*> made;
    bool toStart = startDate;
    if (startDate) AddDate(*row.task, source.ConstraintDate, 0);
    for (const MLink& link : source.Links) {
        Vdependency* dependency = ImportPredecessor(row, link, row.task);
        plan_.links[source.UID].push_back(dependency);
        if (!dependency) continue;
        made.push_back(dependency);
        toStart = toStart || dependency->ToPercent() == 0;
    }
    if (source.Manual && !made.empty() && !startDate) {
        Lose(Name(source), "Scheduled by hand", "All tasks are scheduled by the solve",
             "It starts not before " + FormatDate(StartOf(row)));
        AddDate(*row.task, StartOf(row), 0);
        toStart = true;
    }
    if (made.empty() && !startDate) {
        AddDate(*row.task, StartOf(row), 0);
        toStart = true;
    }
    if (finishDate) AddDate(*row.task, source.ConstraintDate, 100);
    if (!toStart) AddDefaultToStart(row, made.front()->TaskRequired());
}

void PlanImport::AddDefaultToStart(Row& row, Vtask* required) {
    constexpr auto no = static_cast<std::int16_t>(BoxAnswer::No);
    std::int16_t& answer = transfer_.ToStartAnswer;
    if (answer == 0) {
        answer = static_cast<std::int16_t>(workspace_.ThePlatform().MessageBox(
            "A task was found that had to-finish dependencies but no to-start dependencies.  Do you want to "
            "automatically generate a to-start dependency each time this situation is encountered?",
            "Confirm Add To-Start Dependencies", BoxIcon::Question, BoxButtons::YesNo));
    }
    if (answer == no) return;
    auto* dependency = workspace_.NewVObject<Vdependency>();
    dependency->SetTask(row.task);
    dependency->SetTaskRequired(required);
    Lose(Name(*row.source), "Start that nothing decides",
         "Each task needs something that says when it starts",
         "It waits for the end of its first predecessor");
}

/// None where the link leads nowhere, which is listed.
Vdependency* PlanImport::ImportPredecessor(const Row& row, const MLink& link, Vtask* task) {
    const auto known = link.CrossProject ? rowOf_.end() : rowOf_.find(link.PredecessorUID);
    const Row* from = known == rowOf_.end() ? nullptr : &rows_[static_cast<std::size_t>(known->second)];
    std::string text = link.CrossProject ? link.CrossProjectName : from ? std::to_string(from->number) : "";
    const bool percent = IsPercent(PlainFormat(link.LagFormat));
    text += LinkTypeText(link.Type);
    if (!percent)
        text += SignedText(IsElapsed(PlainFormat(link.LagFormat)) ? link.Lag / kMinutesPerDay
                                                                  : time_.CalendarDays(link.Lag));
    auto* dependency = workspace_.NewVObject<Vdependency>();
    dependency->SetTask(task);
    ParseDependency(*dependency, file_.Name, text, keys_);
    const Vtask* required = dependency->TaskRequired();
    if (!required || required == task) {
        const std::string name = link.CrossProject ? link.CrossProjectName
                                 : from            ? "itself"
                                                   : "task UID " + std::to_string(link.PredecessorUID);
        Lose(Name(*row.source), LinkText(link, name),
             required            ? "A task cannot wait for itself"
             : link.CrossProject ? "That task is in another file"
                                 : "There is no such task in the plan",
             "Left out");
        workspace_.FreeVobject(dependency);
        return nullptr;
    }
    if (percent && link.Lag != 0 && from) SetPercentLag(row, link, *dependency, *from->source);
    return dependency;
}

/// A lead before the end, or a lag behind the start, is a part of the predecessor's work. What lies outside
/// of it is time.
void PlanImport::SetPercentLag(const Row& row, const MLink& link, Vdependency& dependency,
                               const MTask& predecessor) {
    const bool fromStart = StartsFromStart(link.Type);
    const double part = fromStart ? link.Lag : 100 + link.Lag;
    const bool whole = dependency.TaskRequired()->Subproject() != nullptr;
    if (part >= 0 && part <= 100 && part == std::floor(part) && (!whole || part == 0 || part == 100)) {
        dependency.SetFromPercent(static_cast<std::uint8_t>(part));
        return;
    }
    const double minutes = predecessor.Duration * link.Lag / 100;
    const double days = IsElapsed(PlainFormat(predecessor.DurationFormat)) ? minutes / kMinutesPerDay
                                                                           : time_.CalendarDays(minutes);
    dependency.SetOffset(days);
    Lose(Name(*row.source), LinkText(link, Name(predecessor)),
         "Only a part of the work before can be told in percent",
         "An offset of " + PlainNumber(std::round(days * 100) / 100) + " days");
}

/// The tasks of a summary that wait for no other in it. `any`: its first task, if it has one.
std::vector<Vtask*> PlanImport::FirstTasksIn(std::int32_t index, Row*& any) {
    const Row& summary = rows_[static_cast<std::size_t>(index)];
    std::vector<Vtask*> first;
    if (summary.inner) first.push_back(summary.inner);
    for (std::int32_t i = index + 1; i < summary.end; ++i) {
        Row& row = rows_[static_cast<std::size_t>(i)];
        if (row.subproject) continue;
        if (!any) any = &row;
        const bool waits =
            std::any_of(row.source->Links.begin(), row.source->Links.end(), [&](const MLink& link) {
                const auto from = rowOf_.find(link.PredecessorUID);
                return !link.CrossProject && LeadsToStart(link.Type) && from != rowOf_.end() &&
                       from->second > index && from->second < summary.end;
            });
        if (!waits) first.push_back(row.task);
    }
    return first;
}

/// A task that stands for a subproject does not wait, so the first tasks in it do.
void PlanImport::ImportLinksOfSummary(std::int32_t index) {
    const Row& summary = rows_[static_cast<std::size_t>(index)];
    const MTask& source = *summary.source;
    const auto kind = static_cast<MConstraint>(source.ConstraintType);
    const bool startDate = source.ConstraintDate.IsSet() &&
                           (kind == MConstraint::MustStartOn || kind == MConstraint::StartNoEarlierThan);
    const bool otherDate = source.ConstraintDate.IsSet() && !startDate && kind >= MConstraint::MustStartOn;
    if (!summary.subproject || VortanTellsLinks(source)) return;
    if (otherDate)
        Lose(Name(source), "Constraint of " + FormatDate(source.ConstraintDate),
             "What stands for a subproject has no dates of its own", "Left out");
    if (source.Links.empty() && !startDate && source.FixedCost == 0) return;
    Row* any = nullptr;
    const std::vector<Vtask*> first = FirstTasksIn(index, any);
    if (source.FixedCost != 0) {
        if (any) any->task->SetMaterialCost(any->task->MaterialCost() + Money::FromDouble(source.FixedCost));
        Lose(Name(source), "Fixed cost", "The cost of a subproject is that of its tasks",
             any ? "It is material cost of " + Name(*any->source) : "Left out");
    }
    const auto instead = [&] {
        return first.empty()       ? std::string("Left out")
               : first.size() == 1 ? "The first task in it waits: " + first.front()->BuildNodeText()
                                   : "The " + std::to_string(first.size()) + " first tasks in it wait";
    };
    if (startDate) {
        for (Vtask* task : first) AddDate(*task, source.ConstraintDate, 0);
        Lose(Name(source), "Start not before " + FormatDate(source.ConstraintDate),
             "What stands for a subproject has no dates of its own", instead());
    }
    for (const MLink& link : source.Links) {
        const auto from = link.CrossProject ? rowOf_.end() : rowOf_.find(link.PredecessorUID);
        const std::string name = from == rowOf_.end()
                                     ? link.CrossProject ? link.CrossProjectName
                                                         : "task UID " + std::to_string(link.PredecessorUID)
                                     : Name(*rows_[static_cast<std::size_t>(from->second)].source);
        const bool carried =
            LeadsToStart(link.Type) && spread_ + static_cast<std::int64_t>(first.size()) <= kMostSpread;
        bool made = false;
        if (carried && !(from != rowOf_.end() && from->second >= index && from->second < summary.end)) {
            for (Vtask* task : first) {
                if (!ImportPredecessor(summary, link, task)) break;
                made = true;
            }
            if (!made && !first.empty()) continue;  // it leads nowhere, as has been listed
            spread_ += static_cast<std::int64_t>(first.size());
        }
        Lose(Name(source), LinkText(link, name), "What stands for a subproject does not wait for others",
             made ? instead() : "Left out");
    }
}

}  // namespace vortan
