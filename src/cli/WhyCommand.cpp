#include <array>
#include <cmath>
#include <ostream>

#include "cli/Commands.h"
#include "cli/SolveJson.h"
#include "model/ValueText.h"
#include "solve/ProblemText.h"
#include "solve/Why.h"

namespace vortan {

namespace {

using Cause = WhyReport::Cause;

constexpr double kHeldBack = 1.0 / kMinutesPerDay;  // room that counts as none, days
constexpr double kListedAlone = 0.999;              // shorter stretches are added up by cause, days
constexpr std::size_t kMostFollowers = 10;

std::string Span(DateTime from, DateTime to) {
    return FormatDate(from) + " to " + FormatDate(to);
}

std::string PercentText(int percent) {
    return std::to_string(percent) + "%";
}

/// "task 3: Walls of project House has reached 50% (9/4/2001)".
std::string DescribeDependency(const Vdependency& dependency, DateTime date) {
    const Vtask* required = dependency.TaskRequired();
    if (!required) return "the date " + FormatDate(date);
    const int percent = dependency.FromPercent();
    const std::string point = percent == 0     ? "begins"
                              : percent == 100 ? "is done"
                                               : "reaches " + PercentText(percent);
    return NameTask(*required) + " " + point + " (" + FormatDate(date) + ")";
}

std::string DescribeStart(const WhyReport::Start& start, bool whole) {
    std::string text = whole ? "It starts"
                             : "Its part from " + PercentText(start.fromPercent) + " to " +
                                   PercentText(start.toPercent) + " starts";
    text += " at " + FormatDate(start.at) + ": ";
    if (start.dependency) {
        text += "decided by " + DescribeDependency(*start.dependency, start.dependencyDate);
        if (start.offset != 0) {
            text += start.offset > 0 ? ", and " : ", less ";
            text += FormatDuration(std::abs(start.offset), true);
            if (start.offset > 0) text += " later";
        }
        return text + ".";
    }
    if (start.afterSliceBefore) return text + "as soon as the part before it is done.";
    return text + "nothing holds it back.";
}

std::string DescribeCause(const WhyReport::Stretch& stretch) {
    switch (stretch.cause) {
        case Cause::NoWorkDay:
            return "no work day of its assignments";
        case Cause::OutsideShift:
            return "outside the normal time of the shift";
        case Cause::Held:
            return (stretch.resource ? NameResource(*stretch.resource) : "a resource") + " is held by " +
                   (stretch.holder ? NameTask(*stretch.holder) : "another task");
        case Cause::HoursUsed:
            return "the hours assigned for the day are worked";
        case Cause::Waiting:
            return "waiting at " + PercentText(stretch.percent) + " for " +
                   (stretch.dependency
                        ? DescribeDependency(*stretch.dependency, stretch.dependency->DepDate())
                        : std::string("a dependency"));
        case Cause::Unbooked:
            return "counted as worked, though " +
                   (stretch.holder ? NameTask(*stretch.holder) : "another task") + " holds the resource";
    }
    return "";
}

bool ListedAlone(const WhyReport::Stretch& stretch) {
    return stretch.cause == Cause::Held || stretch.cause == Cause::Waiting ||
           stretch.cause == Cause::Unbooked || DaysBetween(stretch.from, stretch.to) >= kListedAlone;
}

void PrintStretches(std::ostream& out, const WhyReport& report) {
    if (report.stretches.empty()) return;
    out << "It stood still:\n";
    std::array<int, 6> count{};
    std::array<double, 6> days{};
    for (const auto& stretch : report.stretches) {
        if (ListedAlone(stretch)) {
            out << "  " << Span(stretch.from, stretch.to) << " ("
                << FormatDuration(DaysBetween(stretch.from, stretch.to), true)
                << "): " << DescribeCause(stretch) << "\n";
        } else {
            ++count[static_cast<std::size_t>(stretch.cause)];
            days[static_cast<std::size_t>(stretch.cause)] += DaysBetween(stretch.from, stretch.to);
        }
    }
    for (std::size_t i = 0; i < count.size(); ++i) {
        if (count[i] == 0) continue;
        WhyReport::Stretch kind;
        kind.cause = static_cast<Cause>(i);
        out << "  " << count[i] << (count[i] == 1 ? " shorter time" : " shorter times") << ", "
            << FormatDuration(days[i], true) << " in all: " << DescribeCause(kind) << "\n";
    }
}

void PrintFollowers(std::ostream& out, const WhyReport& report) {
    if (report.followers.empty()) {
        out << "Nothing waits for it.\n";
        return;
    }
    out << "It holds back next:\n";
    std::size_t held = 0;
    for (const auto& follower : report.followers) {
        if (follower.roomDays > kHeldBack || held == kMostFollowers) break;
        out << "  " << NameTask(*follower.task);
        if (follower.percent > 0) out << ", from " << PercentText(follower.percent) << " on";
        out << " (" << FormatDate(follower.start) << ")\n";
        ++held;
    }
    if (held == 0) {
        const auto& next = report.followers.front();
        out << "  nothing yet: " << NameTask(*next.task) << " waits for it too, with "
            << FormatDuration(next.roomDays, true) << " of room\n";
    }
    if (report.followers.size() > held && held > 0) {
        out << "  and " << report.followers.size() - held << " more that wait for it, with room\n";
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
    out << Span(task.EarlyStart(), task.EarlyFinish()) << "\n\n";
    if (task.Subproject()) out << "It stands for a subproject and takes its dates from the tasks in there.\n";
    for (const auto& start : report.starts) {
        if (!task.Subproject()) out << DescribeStart(start, report.starts.size() == 1) << "\n";
    }
    PrintStretches(out, report);
    if (!report.solved) {
        out << "It was not placed to its end.\n";
        return;
    }
    PrintFollowers(out, report);
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
    const WhyReport report = ExplainTask(session.workspace, session.solver, *task);
    if (options.json) {
        session.streams.out << WhyJson(session, *task, report);
        return exitCode;
    }
    PrintReport(session.streams.out, *task, report);
    if (exitCode != kExitDone) {
        session.streams.out << "\n"
                            << session.solver.SolveMessage() << "\n"
                            << ExplainProblem(session.workspace, session.solver) << "\n";
    }
    return exitCode;
}

}  // namespace vortan
