#include <algorithm>
#include <cmath>
#include <ostream>

#include "cli/Commands.h"
#include "cli/SolveJson.h"
#include "cli/TextTable.h"
#include "model/ValueText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "solve/ProblemText.h"
#include "solve/Why.h"

namespace vortan {

namespace {

using Cause = WhyReport::Cause;

constexpr double kHeldBack = 1.0 / kMinutesPerDay;  // room that counts as none, days
constexpr double kListedAlone = 0.999;              // shorter stretches are added up by cause, days
constexpr double kLongWeekend = 4;                  // the same where nobody works, days
constexpr std::size_t kMostFollowers = 10;

std::string Span(DateTime from, DateTime to) {
    return MomentText(from) + " to " + MomentText(to);
}

std::string PercentText(int percent) {
    return std::to_string(percent) + "%";
}

/// A task by its name; its project only where that is not `home`.
std::string NameFrom(const Vproject* home, const Vtask& task) {
    return task.Project() == home ? "task " + task.BuildNodeText() : NameTask(task);
}

/// When a dependency lets its task go on: "when task 3: Walls reaches 50%", "2 days after task 3: Walls is
/// done (9/4/2001)", "the date set for it". `joint` stands before a task without an offset.
std::string DescribeDependency(const Vdependency& dependency, DateTime date, const char* joint) {
    std::string text;
    if (dependency.Offset() != 0) {
        text = FormatDuration(std::abs(dependency.Offset()), true) +
               (dependency.Offset() > 0 ? " after " : " before ");
    }
    const Vtask* required = dependency.TaskRequired();
    if (!required) {
        text += "the date set for it";
    } else {
        const int percent = dependency.FromPercent();
        if (text.empty()) text = joint;
        text += NameFrom(dependency.Task()->Project(), *required) +
                (percent == 0     ? " begins"
                 : percent == 100 ? " is done"
                                  : " reaches " + PercentText(percent));
    }
    return dependency.Offset() != 0 ? text + " (" + MomentText(date) + ")" : text;
}

std::string DescribeStart(const WhyReport::Start& start, bool whole) {
    std::string text = whole ? "It starts"
                             : "Its part from " + PercentText(start.fromPercent) + " to " +
                                   PercentText(start.toPercent) + " starts";
    text += " at " + MomentText(start.at) + ", ";
    if (start.dependency)
        return text + DescribeDependency(*start.dependency, start.dependencyDate, "when ") + ".";
    if (start.afterSliceBefore) return text + "as soon as the part before it is done.";
    return text + "because nothing holds it back.";
}

std::string DescribeCause(const WhyReport::Stretch& stretch, const Vproject* home) {
    switch (stretch.cause) {
        case Cause::NoWorkDay:
            return "no work day of its assignments";
        case Cause::OutsideShift:
            return "outside the normal time of the shift";
        case Cause::Held:
            return (stretch.resource ? NameResource(*stretch.resource) : "a resource") + " is held by " +
                   (stretch.holder ? NameFrom(home, *stretch.holder) : "another task");
        case Cause::HoursUsed:
            return "the hours assigned for the day are worked";
        case Cause::Waiting:
            return "waiting at " + PercentText(stretch.percent) + " until " +
                   (stretch.dependency
                        ? DescribeDependency(*stretch.dependency, stretch.dependency->DepDate(), "")
                        : std::string("a dependency is met"));
        case Cause::Unbooked:
            return "counted as worked, though " +
                   (stretch.holder ? NameFrom(home, *stretch.holder) : "another task") +
                   " holds the resource";
    }
    return "";
}

/// Stretches of one cause that a line tells about together.
struct StretchGroup {
    WhyReport::Stretch first;
    DateTime to;
    int count = 0;
    double days = 0;

    bool Takes(const WhyReport::Stretch& stretch) const {
        return count > 0 && stretch.cause == first.cause && stretch.resource == first.resource &&
               stretch.holder == first.holder;
    }
};

/// Whether a stretch is news on its own: not a night, a weekend, or an hour that the crane was elsewhere.
bool ListedAlone(const WhyReport::Stretch& stretch) {
    const double days = DaysBetween(stretch.from, stretch.to);
    return stretch.cause == Cause::Waiting ||
           days >= (stretch.cause == Cause::NoWorkDay ? kLongWeekend : kListedAlone);
}

void PrintStretches(std::ostream& out, const WhyReport& report, const Vproject* home) {
    if (report.stretches.empty()) return;
    out << "It stood still:\n";
    std::vector<StretchGroup> groups;
    for (const auto& stretch : report.stretches) {
        const double days = DaysBetween(stretch.from, stretch.to);
        if (ListedAlone(stretch)) {
            out << "  " << Span(stretch.from, stretch.to) << " (" << FormatDuration(days, true)
                << "): " << DescribeCause(stretch, home) << "\n";
            continue;
        }
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&](const StretchGroup& each) { return each.Takes(stretch); });
        if (group == groups.end()) group = groups.insert(groups.end(), StretchGroup{stretch, {}, 0, 0});
        group->to = stretch.to;
        group->days += days;
        ++group->count;
    }
    for (const StretchGroup& group : groups) {
        out << "  " << Span(group.first.from, group.to) << ", ";
        if (group.count > 1) out << group.count << " times, ";
        out << FormatDuration(group.days, true) << (group.count > 1 ? " in all: " : ": ")
            << DescribeCause(group.first, home) << "\n";
    }
}

void PrintFollowers(std::ostream& out, const WhyReport& report, const Vproject* home) {
    if (report.followers.empty()) {
        out << "Nothing waits for it.\n";
        return;
    }
    std::size_t held = 0;
    for (const auto& follower : report.followers) {
        if (follower.roomDays > kHeldBack || held == kMostFollowers) break;
        if (held == 0) out << "It holds back:\n";
        out << "  " << NameFrom(home, *follower.task);
        if (follower.percent > 0) out << ", from " << PercentText(follower.percent) << " on";
        out << " (" << MomentText(follower.start) << ")\n";
        ++held;
    }
    const std::size_t more = report.followers.size() - held;
    if (held == 0) {
        const auto& next = report.followers.front();
        out << "It holds nothing back: " << NameFrom(home, *next.task) << " waits for it, with "
            << FormatDuration(next.roomDays, true) << " of room.\n";
    } else if (more > 0) {
        out << "  and " << more << (more == 1 ? " more that waits" : " more that wait") << " for it"
            << (report.followers[held].roomDays > kHeldBack ? ", with room\n" : "\n");
    }
}

void PrintSlack(std::ostream& out, const WhyReport& report) {
    if (std::abs(report.slackDays) < kHeldBack) {
        out << "It has no slack: any delay moves the end of the plan.\n";
    } else if (report.slackDays > 0) {
        out << "It has " << FormatDuration(report.slackDays, true) << " of slack.\n";
    } else {
        out << "It ends " << FormatDuration(-report.slackDays, true) << " later than the plan allows.\n";
    }
}

const char* CauseName(Cause cause) {
    static constexpr const char* kNames[] = {"noWorkDay", "outsideShift", "held",
                                             "hoursUsed", "waiting",      "unbooked"};
    return kNames[static_cast<int>(cause)];
}

std::string TaskJson(const Vtask* task) {
    if (!task || !task->Project()) return "null";
    return "{\"project\":" + JsonText(task->Project()->ProjectName()) + ",\"task\":" + task->Key() + "}";
}

std::string DependencyJson(const Vdependency* dependency) {
    if (!dependency) return "null";
    return "{\"taskRequired\":" + TaskJson(dependency->TaskRequired()) +
           ",\"from\":" + std::to_string(dependency->FromPercent()) +
           ",\"to\":" + std::to_string(dependency->ToPercent()) +
           ",\"date\":" + JsonNumber(dependency->DepDate().Days()) +
           ",\"offset\":" + JsonNumber(dependency->Offset()) + "}";
}

std::string WhyJson(const CliSession& session, const Vtask& task, const WhyReport& report) {
    std::string out = "{\"status\":" + JsonText(session.solver.SolveMessage()) +
                      ",\"project\":" + JsonText(task.Project()->ProjectName()) + ",\"task\":" + task.Key() +
                      ",\"earlyStart\":" + JsonNumber(task.EarlyStart().Days()) +
                      ",\"earlyFinish\":" + JsonNumber(task.EarlyFinish().Days()) +
                      ",\"slack\":" + (report.solved ? JsonNumber(report.slackDays) : "null") +
                      ",\"starts\":[";
    const char* comma = "";
    for (const auto& start : report.starts) {
        out += comma + ("{\"from\":" + std::to_string(start.fromPercent)) +
               ",\"to\":" + std::to_string(start.toPercent) + ",\"at\":" + JsonNumber(start.at.Days()) +
               ",\"dependency\":" + DependencyJson(start.dependency) +
               ",\"afterSliceBefore\":" + (start.afterSliceBefore ? "true" : "false") + "}";
        comma = ",";
    }
    out += "],\"stretches\":[";
    comma = "";
    for (const auto& stretch : report.stretches) {
        out += comma + ("{\"from\":" + JsonNumber(stretch.from.Days())) +
               ",\"to\":" + JsonNumber(stretch.to.Days()) + ",\"cause\":\"" + CauseName(stretch.cause) + "\"";
        if (stretch.resource) {
            out += ",\"template\":" + JsonText(stretch.resource->Template()->TemplateName()) +
                   ",\"resource\":" + stretch.resource->Key() + ",\"holder\":" + TaskJson(stretch.holder);
        }
        if (stretch.cause == Cause::Waiting) {
            out += ",\"percent\":" + std::to_string(stretch.percent) +
                   ",\"dependency\":" + DependencyJson(stretch.dependency);
        }
        out += "}";
        comma = ",";
    }
    out += "],\"followers\":[";
    comma = "";
    for (const auto& follower : report.followers) {
        out += comma + ("{\"follower\":" + TaskJson(follower.task)) +
               ",\"start\":" + JsonNumber(follower.start.Days()) +
               ",\"percent\":" + std::to_string(follower.percent) +
               ",\"room\":" + JsonNumber(follower.roomDays) + "}";
        comma = ",";
    }
    return out + "]}\n";
}

void PrintReport(std::ostream& out, const Vtask& task, const WhyReport& report) {
    std::string name = NameTask(task);
    name.front() = 'T';
    out << name << "\n";
    if (report.starts.empty()) {
        out << "It was not placed.\n";
        return;
    }
    out << (report.solved ? Span(task.EarlyStart(), task.EarlyFinish())
                          : "From " + MomentText(task.EarlyStart()) + " on")
        << "\n\n";
    if (task.Subproject()) out << "It stands for a subproject and takes its dates from the tasks in there.\n";
    for (const auto& start : report.starts) {
        if (!task.Subproject()) out << DescribeStart(start, report.starts.size() == 1) << "\n";
    }
    PrintStretches(out, report, task.Project());
    if (!report.solved) {
        out << "It was not placed to its end: the solve halted in its midst.\n";
        return;
    }
    PrintFollowers(out, report, task.Project());
    PrintSlack(out, report);
}

}  // namespace

int WhyCommand(CliSession& session, const WhyOptions& options) {
    session.Load(options.file);
    session.SelectProject(options.project);
    const Vproject* project = session.workspace.ThisProject();
    const Vtask* task = project ? project->FindTask(options.task) : nullptr;
    if (!task || !task->Include()) {
        throw CliError("There is no task " + std::to_string(options.task) + " in " +
                       (project ? "project " + project->ProjectName() : options.file) + ".");
    }
    session.solver.Watch(task);
    const int exitCode = session.Solve();
    const WhyReport report = ExplainTask(session.solver, *task);
    if (options.json) {
        session.streams.out << WhyJson(session, *task, report);
        return exitCode;
    }
    PrintReport(session.streams.out, *task, report);
    if (exitCode != kExitDone) {
        session.streams.out << "\n" << session.StatusLine() << "\n";
    }
    return exitCode;
}

}  // namespace vortan
