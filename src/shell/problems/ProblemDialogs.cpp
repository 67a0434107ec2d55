#include "shell/problems/ProblemDialogs.h"

#include <algorithm>

#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "shell/entry/TaskEntryForm.h"
#include "shell/problems/OverageForm.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

constexpr std::size_t kMostListed = 10;
const std::string kNewLine = "\r\n", kBlankLine = "\r\n\r\n";

bool Ask(Desktop& desktop, const std::string& text, const std::string& title) {
    return desktop.platform.MessageBox(text, title, BoxIcon::Question, BoxButtons::YesNo) == BoxAnswer::Yes;
}
void Tell(Desktop& desktop, const std::string& text, const std::string& title) {
    desktop.platform.MessageBox(text, title, BoxIcon::Warning, BoxButtons::Ok);
}

void AddDependency(Vtask& task, Vtask& required, int fromPercent) {
    auto* dependency = task.Owner().NewVObject<Vdependency>();
    dependency->SetTask(&task);
    dependency->SetTaskRequired(&required);
    dependency->SetFromPercent(static_cast<std::uint8_t>(fromPercent));
}

// ---- dangling tasks

void GenerateDummy(Desktop& desktop, Trees& trees, Vproject& project,
                   const std::vector<Link<Vtask>>& dangling) {
    auto* dummy = desktop.workspace.NewVObject<Vtask>();
    dummy->SetProject(&project);
    dummy->SetTaskID(project.HighestTaskID() + 1);
    dummy->SetDescription("Computer-generated dummy");
    TaskEntryForm::SetDefaultEfficiency(desktop, *dummy);
    for (const Link<Vtask>& task : dangling) {
        if (task) AddDependency(*dummy, *task.Get(), 100);
    }
    trees.ProjectTree().Start();
}

void HandleDanglingTask(Desktop& desktop, Trees& trees) {
    // By identity: a solve may run while the box is open, and number the slices anew.
    std::vector<Link<Vtask>> dangling;
    std::string lines;
    for (const std::int32_t index : desktop.solver.DanglingList()) {
        const Vslice slice = desktop.solver.Slice(index);
        if (!slice.task || !slice.task->Project()) continue;
        dangling.emplace_back(slice.task);
        if (dangling.size() <= kMostListed) lines += kNewLine + "  " + slice.BuildNodeText();
    }
    if (dangling.empty()) return desktop.workspace.RestartSolve();
    const Link<Vproject> master = dangling.front()->Project()->Master();
    const std::string text =
        "A dangling task is one whose end is not required by any other task.  Each project should have "
        "exactly one dangling task." +
        kBlankLine + "The project " + master->BuildNodeText() + " has " + std::to_string(dangling.size()) +
        (dangling.size() > kMostListed ? " (only the first 10 are listed)" : "") + ":" + lines + kBlankLine +
        "Do you want to create a dummy task to tie all of the all of the dangling tasks together?";
    if (Ask(desktop, text, "Okay to Create Dummy Task?") && master)
        GenerateDummy(desktop, trees, *master.Get(), dangling);
}

// ---- missing dependencies

void HandleMissingDep(Desktop& desktop, Trees& trees, const Link<Vtask>& task) {
    trees.ShowInProjectTree(task.Get(), *task->Project());
    const auto& all = task->DependencyList();
    const auto first =
        std::find_if(all.begin(), all.end(), [](const Vdependency* one) { return one->Include(); });
    const Link<Vtask> candidate = first == all.end() ? nullptr : (*first)->TaskRequired();
    std::string text =
        "The task " + task->BuildNodeText() +
        " has no to-start dependencies.  Each task must have at least one to-start dependency.";
    if (!candidate) return Tell(desktop, text, "No Dependencies");
    text += kBlankLine + "Do you want to add a start-to-start dependency from " + candidate->BuildNodeText() +
            "?";
    if (!Ask(desktop, text, "Confirm Add Start-To-Start") || !task || !candidate) return;
    AddDependency(*task.Get(), *candidate.Get(), 0);
    trees.ProjectTree().RebuildTaskSubTree(*task.Get(), true);
}

// ---- journals

void ExplainJournalSync(Desktop& desktop) {
    Workspace& workspace = desktop.workspace;
    if (!workspace.ThisProjectSet()) return;
    const Vproject& active = *workspace.ThisProject();
    const DateTime journal = active.Journal();
    const auto& all = workspace.ProjectList();
    const auto differing =
        std::find_if(all.begin(), all.end(), [&](const Vproject* one) { return one->Journal() != journal; });
    if (differing == all.end()) return workspace.RestartSolve();
    const Link<Vproject> other = *differing;
    const bool found = other->JournalDefined(journal);

    const std::string name = other->BuildNodeText(), date = FormatDate(journal);
    const std::string otherDate = other->NumJournals() > 0 ? FormatDate(other->Journal()) : "<none>";
    std::string text =
        "The current journal of all projects in memory must match prior to solving.  This is because a "
        "change in one project may change resource availability which may in turn cause a different project "
        "to get a different solution." +
        kBlankLine + "The active project is " + active.BuildNodeText() + " and its current journal is " +
        date + "." + kBlankLine + "The project " + name + (found ? " has" : " does not have") +
        " a journal for " + date + (found ? ", but " : ", and ") + "its current journal set to " + otherDate +
        "." + kBlankLine;
    if (other->Journal() > journal) {
        text += "You may wish to change the active project from " + active.BuildNodeText() + " to " + name +
                ".  This will give you the opportunity to create a journal of " + otherDate +
                " for project " + active.BuildNodeText() + "." + kBlankLine;
    }
    text += "If you continue, VORTAN will ";
    text += found
                ? "change the current journal for project " + name + " to " + date + "."
                : "add a journal of " + date + " to project " + name + " and set it as the current journal.";
    text += kBlankLine + "Do you wish to continue?";
    const std::string title = std::string("Confirm ") + (found ? "Change" : "Add") + " Journal";
    if (!Ask(desktop, text, title) || !other) return;
    if (other->AddJournal(journal)) other->SetDirty(true);
    workspace.BroadcastNewJournal();
    workspace.RestartSolve();
}

/// Those that leave no choice: shows the object at fault.
void HandleOther(Trees& trees, const SolveProblem& problem) {
    if (problem.dependency)
        return trees.ShowInProjectTree(problem.dependency.Get(), *problem.dependency->Project());
    if (problem.assignment)
        return trees.ShowInProjectTree(problem.assignment.Get(), *problem.assignment->Project());
    trees.ShowInProjectTree(problem.task.Get(), *problem.task->Project());
}

/// Whether the object at fault is still part of a project.
bool StandsStill(const SolveProblem& problem) {
    return (problem.task && problem.task->Project()) ||
           (problem.dependency && problem.dependency->Project()) ||
           (problem.assignment && problem.assignment->Project());
}

}  // namespace

void SolvePanelClick(Desktop& desktop, Trees& trees) {
    if (desktop.solver.Mode() != SolveMode::Halted) return;
    using Kind = SolveProblem::Kind;
    if (!desktop.solver.Problem()) return desktop.workspace.RestartSolve();
    const SolveProblem problem = *desktop.solver.Problem();
    if (problem.kind == Kind::Dangling) return HandleDanglingTask(desktop, trees);
    if (problem.kind == Kind::JournalSync) return ExplainJournalSync(desktop);
    if (!StandsStill(problem)) return desktop.workspace.RestartSolve();
    if (problem.IsShortage()) {
        OverageForm::Start(desktop, trees);
    } else if (problem.kind == Kind::MissingToStart) {
        HandleMissingDep(desktop, trees, problem.task);
    } else {
        HandleOther(trees, problem);
    }
}

}  // namespace vortan
