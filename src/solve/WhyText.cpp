#include "solve/WhyText.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <sstream>

#include "model/ValueText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "solve/ProblemText.h"

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

/// Who reads: the project of the task, which goes without saying, and how names are written.
struct Reader {
    const Vproject* home;
    const WhyNames& names;

    std::string Name(const Vtask& task) const {
        const std::string name = task.Project() == home ? "task " + task.BuildNodeText() : NameTask(task);
        return names.task ? names.task(task, name) : name;
    }
    std::string Name(const Vresource& resource) const {
        const std::string name = NameResource(resource);
        return names.plain ? names.plain(name) : name;
    }
};

/// When a dependency lets its task go on: "when task 3: Walls reaches 50%", "2 days after task 3: Walls is
/// done (9/4/2001)", "the date set for it". `joint` stands before a task without an offset.
std::string DescribeDependency(const Vdependency& dependency, DateTime date, const char* joint,
                               const Reader& reader) {
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
        text += reader.Name(*required) + (percent == 0     ? " begins"
                                          : percent == 100 ? " is done"
                                                           : " reaches " + PercentText(percent));
    }
    return dependency.Offset() != 0 ? text + " (" + MomentText(date) + ")" : text;
}

std::string DescribeStart(const WhyReport::Start& start, bool whole, const Reader& reader) {
    std::string text = whole ? "It starts"
                             : "Its part from " + PercentText(start.fromPercent) + " to " +
                                   PercentText(start.toPercent) + " starts";
    text += " at " + MomentText(start.at) + ", ";
    if (start.dependency)
        return text + DescribeDependency(*start.dependency, start.dependencyDate, "when ", reader) + ".";
    if (start.afterSliceBefore) return text + "as soon as the part before it is done.";
    return text + "because nothing holds it back.";
}

std::string DescribeCause(const WhyReport::Stretch& stretch, const Reader& reader) {
    switch (stretch.cause) {
        case Cause::NoWorkDay:
            return "no work day of its assignments";
        case Cause::OutsideShift:
            return "outside the normal time of the shift";
        case Cause::Held:
            return (stretch.resource ? reader.Name(*stretch.resource) : "a resource") + " is held by " +
                   (stretch.holder ? reader.Name(*stretch.holder) : "another task");
        case Cause::HoursUsed:
            return "the hours assigned for the day are worked";
        case Cause::Waiting:
            return "waiting at " + PercentText(stretch.percent) + " until " +
                   (stretch.dependency
                        ? DescribeDependency(*stretch.dependency, stretch.dependency->DepDate(), "", reader)
                        : std::string("a dependency is met"));
        case Cause::Unbooked:
            return "counted as worked, though " +
                   (stretch.holder ? reader.Name(*stretch.holder) : "another task") + " holds the resource";
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

void PrintStretches(std::ostream& out, const WhyReport& report, const Reader& reader) {
    if (report.stretches.empty()) return;
    out << "It stood still:\n";
    std::vector<StretchGroup> groups;
    for (const auto& stretch : report.stretches) {
        const double days = DaysBetween(stretch.from, stretch.to);
        if (ListedAlone(stretch)) {
            out << "  " << Span(stretch.from, stretch.to) << " (" << FormatDuration(days, true)
                << "): " << DescribeCause(stretch, reader) << "\n";
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
            << DescribeCause(group.first, reader) << "\n";
    }
}

void PrintFollowers(std::ostream& out, const WhyReport& report, const Reader& reader) {
    if (report.followers.empty()) {
        out << "Nothing waits for it.\n";
        return;
    }
    std::size_t held = 0;
    for (const auto& follower : report.followers) {
        if (follower.roomDays > kHeldBack || held == kMostFollowers) break;
        if (held == 0) out << "It holds back:\n";
        out << "  " << reader.Name(*follower.task);
        if (follower.percent > 0) out << ", from " << PercentText(follower.percent) << " on";
        out << " (" << MomentText(follower.start) << ")\n";
        ++held;
    }
    const std::size_t more = report.followers.size() - held;
    if (held == 0) {
        const auto& next = report.followers.front();
        out << "It holds nothing back: " << reader.Name(*next.task) << " waits for it, with "
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

}  // namespace

std::string MomentText(DateTime moment) {
    if (!moment.IsSet()) return "-";
    return WithoutSeconds(FormatDate(moment));
}

std::string WhyText(const Vtask& task, const WhyReport& report, const WhyNames& names) {
    const Reader reader{task.Project(), names};
    std::ostringstream out;
    std::string name = NameTask(task);
    name.front() = 'T';
    out << (names.plain ? names.plain(name) : name) << "\n";
    if (report.starts.empty()) {
        out << "It was not placed.\n";
        return out.str();
    }
    out << (report.solved ? Span(task.EarlyStart(), task.EarlyFinish())
                          : "From " + MomentText(task.EarlyStart()) + " on")
        << "\n\n";
    if (task.Subproject()) out << "It stands for a subproject and takes its dates from the tasks in there.\n";
    for (const auto& start : report.starts) {
        if (!task.Subproject()) out << DescribeStart(start, report.starts.size() == 1, reader) << "\n";
    }
    PrintStretches(out, report, reader);
    if (!report.solved) {
        out << "It was not placed to its end: the solve halted in its midst.\n";
        return out.str();
    }
    PrintFollowers(out, report, reader);
    PrintSlack(out, report);
    return out.str();
}

}  // namespace vortan
