#include "solve/ProblemText.h"

#include <algorithm>

#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"

namespace vortan {

namespace {

constexpr std::size_t kMostNames = 8;  // that a message lists

/// "a", "a and b", "a, b and c", "a, b and 3 more".
std::string JoinNames(std::vector<std::string> names) {
    if (names.size() > kMostNames) {
        const std::string rest = std::to_string(names.size() - kMostNames + 1) + " more";
        names.resize(kMostNames - 1);
        names.push_back(rest);
    }
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) text += i + 1 == names.size() ? " and " : ", ";
        text += names[i];
    }
    return text;
}

std::string Names(const std::vector<Vtask*>& tasks) {
    std::vector<std::string> names;
    for (const Vtask* task : tasks) names.push_back(NameTask(*task));
    return JoinNames(std::move(names));
}

std::string ExplainShortage(const Solver& solver, const SolveProblem& problem) {
    const Vassignment& assignment = *problem.assignment.Get();
    const Vtask& task = *assignment.Task();
    const Vresource* resource = assignment.ResourceRequired();
    if (!resource) return "";
    std::string text = NameTask(task) + " wants " + PlainNumber(problem.requestedHours) + " hours of " +
                       NameResource(*resource) + " on " + FormatShortDate(problem.problemDate) +
                       " and can have " + FormatTwoDecimals(static_cast<float>(problem.assignedHours));
    auto holders = HoldersOf(solver, *resource, problem.problemDate);
    std::erase(holders, &task);
    if (!holders.empty()) text += ", because of " + Names(holders);
    text += ". Assign another resource or fewer hours, let the task wait for a dependency, or give project " +
            (task.Project() ? task.Project()->ProjectName() : "") + " a solve rule that ";
    if (problem.message == "Overtime needed") return text + "uses overtime or extends.";
    if (problem.message == "Overload detected") return text + "uses up to 24 hours or extends.";
    return text + "extends or has no limit.";
}

std::string ExplainJournals(const Workspace& workspace) {
    std::vector<std::string> names;
    for (const Vproject* project : workspace.ProjectList()) {
        names.push_back(project->ProjectName() +
                        (project->NumJournals() > 0 ? " at " + FormatDate(project->Journal())
                                                    : " without any journal (it is only named, not loaded)"));
    }
    return "All projects in memory share their resources, so they must be at the same journal: " +
           JoinNames(names) + ". Make one date active in all of them, or solve them apart.";
}

std::string ExplainCircle(const Solver& solver) {
    std::string text = "These tasks wait for each other in a circle: ";
    const char* joint = " is required by ";
    for (const Link<Vtask>& task : solver.Circle()) {
        if (task) text += NameTask(*task.Get()) + joint;
        joint = ", which is required by ";
    }
    if (!solver.Circle().empty() && solver.Circle().front()) text += NameTask(*solver.Circle().front().Get());
    return text + ". Remove one of these dependencies.";
}

std::string ExplainDangling(const Solver& solver) {
    std::vector<Vtask*> open;
    for (const std::int32_t slice : solver.DanglingList()) {
        if (Vtask* task = solver.Slice(slice).task) open.push_back(task);
    }
    return "Nothing waits for the end of " + Names(open) +
           ". A master project must have one last task only: make another task depend on each of these but "
           "the last.";
}

std::string ExplainDependency(const SolveProblem& problem) {
    const Vdependency& dependency = *problem.dependency.Get();
    const std::string task = NameTask(*dependency.Task());
    const std::string required =
        dependency.TaskRequired() ? NameTask(*dependency.TaskRequired()) : "a deleted task";
    if (problem.message == "Missing prerequisite") {
        return task + " depends on " + required +
               ", which this journal does not have. Delete the dependency, or bring the task back.";
    }
    return task + " depends on " + std::to_string(dependency.FromPercent()) + "% of " + required +
           ". That task stands for a subproject: a dependency on it can run only from its start (0%) or its "
           "end (100%).";
}

std::string ExplainTask(const SolveProblem& problem) {
    const std::string name = NameTask(*problem.task.Get());
    if (problem.message == "Missing to-start dependency") {
        return name +
               " has nothing that says when it starts. Give it a start date or a dependency to its start "
               "(0%).";
    }
    if (problem.message == "Effort without resources") {
        return name +
               " needs work, but nobody is assigned to it with hours. Assign a resource, or make it a "
               "calendar task.";
    }
    if (problem.message == "No working time") {
        return name +
               " can never be worked: its assigned resources have no normal time on the days and hours "
               "assigned, or its dates lie past the year 9999. Check hours, work days, shifts and "
               "dependencies.";
    }
    return name + " stands for a subproject that belongs to another project. Take one of the two links away.";
}

}  // namespace

std::string NameTask(const Vtask& task) {
    return "task " + task.BuildNodeText() +
           (task.Project() ? " (project " + task.Project()->ProjectName() + ")" : "");
}

std::string NameResource(const Vresource& resource) {
    return "resource " + resource.BuildNodeText();
}

std::vector<Vtask*> HoldersOf(const Solver& solver, const Vresource& resource, DateTime day) {
    std::vector<Vtask*> holders;
    for (const Vslot& slot : solver.Slots(resource, static_cast<std::int32_t>(day.WholeDay()))) {
        if (!slot.taskRequired) continue;
        if (std::find(holders.begin(), holders.end(), slot.taskRequired) == holders.end()) {
            holders.push_back(slot.taskRequired);
        }
    }
    return holders;
}

std::string ExplainProblem(const Workspace& workspace, const Solver& solver) {
    if (!solver.Problem()) return "";
    const SolveProblem& problem = *solver.Problem();
    std::string text;
    if (problem.message == "Journal sync error") {
        text = ExplainJournals(workspace);
    } else if (problem.message == "Circular dependency") {
        text = ExplainCircle(solver);
    } else if (problem.message == "Dangling tasks") {
        text = ExplainDangling(solver);
    } else if (problem.assignment) {
        text = ExplainShortage(solver, problem);
    } else if (problem.dependency) {
        text = ExplainDependency(problem);
    } else if (problem.task) {
        text = ExplainTask(problem);
    }
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z')
        text.front() = static_cast<char>(text.front() - 32);
    return text;
}

}  // namespace vortan
