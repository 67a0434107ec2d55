#include <algorithm>
#include <cmath>
#include <ostream>

#include "cli/Command.h"
#include "cli/JsonWriter.h"
#include "cli/Session.h"
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

struct WhyOptions {
    std::string file, project;
    int task = 0;
    bool json = false;
};

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

void WriteTask(JsonWriter& json, const char* name, const Vtask* task) {
    if (!task || !task->Project()) return json.Member(name, nullptr);
    json.ObjectMember(name, [&] {
        json.Member("project", task->Project()->ProjectName());
        json.Member("task", task->TaskID());
    });
}

void WriteDependency(JsonWriter& json, const Vdependency* dependency) {
    if (!dependency) return json.Member("dependency", nullptr);
    json.ObjectMember("dependency", [&] {
        WriteTask(json, "taskRequired", dependency->TaskRequired());
        json.Member("from", dependency->FromPercent());
        json.Member("to", dependency->ToPercent());
        json.Member("date", dependency->DepDate());
        json.Member("offset", dependency->Offset());
    });
}

void WriteStart(JsonWriter& json, const WhyReport::Start& start) {
    json.Object([&] {
        json.Member("from", start.fromPercent);
        json.Member("to", start.toPercent);
        json.Member("at", start.at);
        WriteDependency(json, start.dependency);
        json.Member("afterSliceBefore", start.afterSliceBefore);
    });
}

void WriteStretch(JsonWriter& json, const WhyReport::Stretch& stretch) {
    json.Object([&] {
        json.Member("from", stretch.from);
        json.Member("to", stretch.to);
        json.Member("cause", CauseName(stretch.cause));
        if (stretch.resource) {
            json.Member("template", stretch.resource->Template()->TemplateName());
            json.Member("resource", stretch.resource->ResourceID());
            WriteTask(json, "holder", stretch.holder);
        }
        if (stretch.cause == Cause::Waiting) {
            json.Member("percent", stretch.percent);
            WriteDependency(json, stretch.dependency);
        }
    });
}

void WriteFollower(JsonWriter& json, const WhyReport::Follower& follower) {
    json.Object([&] {
        WriteTask(json, "follower", follower.task);
        json.Member("start", follower.start);
        json.Member("percent", follower.percent);
        json.Member("room", follower.roomDays);
    });
}

std::string WhyJson(const CliSession& session, const Vtask& task, const WhyReport& report) {
    JsonWriter json;
    json.Object([&] {
        json.Member("status", session.solver.SolveMessage());
        json.Member("project", task.Project()->ProjectName());
        json.Member("task", task.TaskID());
        json.Member("earlyStart", task.EarlyStart());
        json.Member("earlyFinish", task.EarlyFinish());
        json.MemberIf(report.solved, "slack", report.slackDays);
        json.ArrayMember("starts", [&] {
            for (const auto& start : report.starts) WriteStart(json, start);
        });
        json.ArrayMember("stretches", [&] {
            for (const auto& stretch : report.stretches) WriteStretch(json, stretch);
        });
        json.ArrayMember("followers", [&] {
            for (const auto& follower : report.followers) WriteFollower(json, follower);
        });
    });
    return json.Line();
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

int Run(CliSession& session, const WhyOptions& options) {
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
        session.streams.out << session.WithLosses(WhyJson(session, *task, report));
        return exitCode;
    }
    PrintReport(session.streams.out, *task, report);
    if (exitCode != kExitDone) {
        session.streams.out << "\n" << session.StatusLine() << "\n";
    }
    return exitCode;
}

}  // namespace

Command WhyCommand() {
    return MakeCommand<WhyOptions>(
        "why", "Explain in plain words why a task lies where it does",
        [](WhyOptions& o) -> std::vector<Option> {
            return {PlanFileOption(o.file),
                    {"--task", &o.task, "Number of the task", "N", true},
                    ProjectOption(o.project, "Its project; the first one if not given"),
                    JsonOption(o.json)};
        },
        Run);
}

}  // namespace vortan
