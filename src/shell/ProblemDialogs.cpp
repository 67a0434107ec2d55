#include "shell/ProblemDialogs.h"

#include <algorithm>
#include <cmath>

#include "model/ValueText.h"
#include "shell/AssignmentEntryForm.h"
#include "shell/CircleForm.h"
#include "shell/MainForm.h"
#include "shell/NodeCommands.h"
#include "shell/NodeView.h"
#include "shell/OverageForm.h"
#include "shell/ProjectTreeForm.h"
#include "shell/Trees.h"
#include "solve/ProblemText.h"

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

/// Shows the object at fault, and below what is wrong with it asks a question.
bool AskAbout(Desktop& desktop, NodeObject object, Vproject& project, const std::string& question) {
    ShowInProjectTree(desktop, object, project);
    return Ask(desktop, ExplainProblem(desktop.workspace, desktop.solver) + kBlankLine + question,
               desktop.solver.SolveMessage());
}

void AddDependency(Vtask& task, Vtask& required, int fromPercent) {
    auto* dependency = task.Owner().NewVObject<Vdependency>();
    dependency->SetTask(&task);
    dependency->SetTaskRequired(&required);
    dependency->SetFromPercent(static_cast<std::uint8_t>(fromPercent));
}

// ---- dangling tasks

void GenerateDummy(Desktop& desktop, Vproject& project, const std::vector<Link<Vtask>>& dangling) {
    auto* dummy = desktop.workspace.NewVObject<Vtask>();
    dummy->SetProject(&project);
    dummy->SetTaskID(project.HighestTaskID() + 1);
    dummy->SetDescription("Computer-generated dummy");
    for (const Link<Vtask>& task : dangling) {
        if (task) AddDependency(*dummy, *task.Get(), 100);
    }
    project.SetDirty(true);
    desktop.trees->ProjectTree().Start();
}

void HandleDanglingTask(Desktop& desktop) {
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
        GenerateDummy(desktop, *master.Get(), dangling);
}

// ---- missing dependencies

void HandleMissingDep(Desktop& desktop, const Link<Vtask>& task) {
    ShowInProjectTree(desktop, task.Get(), *task->Project());
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
    desktop.trees->ProjectTree().RebuildTaskSubTree(*task.Get(), true);
    task->Project()->SetDirty(true);
}

/// The prerequisite of a dependency is not part of the plan: bring it back if there is one to bring back,
/// else let the dependency go.
void HandleMissingPrerequisite(Desktop& desktop, const Link<Vdependency>& dependency) {
    const Link<Vtask> required = dependency->TaskRequired();
    Vproject* home = required ? required->Project() : nullptr;
    const auto& loaded = desktop.workspace.ProjectList();
    const bool canComeBack =
        home && !required->Include() && std::find(loaded.begin(), loaded.end(), home) != loaded.end();
    if (canComeBack && AskAbout(desktop, dependency.Get(), *dependency->Project(),
                                "Do you want to include " + NameTask(*required.Get()) + " again?")) {
        if (!required || !required->Project()) return;
        required->SetInclude(true);
        required->Project()->SetDirty(true);
        return desktop.workspace.BroadcastNewThisProject();
    }
    if (dependency &&
        AskAbout(desktop, dependency.Get(), *dependency->Project(),
                 "Do you want to delete the dependency of " + NameTask(*dependency->Task()) + " on " +
                     dependency->BuildNodeText() + "?") &&
        dependency)
        DeleteDependency(desktop, *dependency.Get());
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

// ---- tasks that cannot be worked

/// "  7: Miller @8 MoTuWeThFr, shift Standard with 8 hours of normal time"
std::string DescribeAssignment(const Vassignment& assignment) {
    const Vresource* resource = assignment.ResourceRequired();
    const Vshift* shift = resource ? resource->Shift() : nullptr;
    const std::string text = "  " + assignment.BuildNodeText();
    if (!shift) return text + ", no shift";
    return text + ", shift " + shift->BuildNodeText() + " with " +
           PlainNumber(std::round(static_cast<double>(shift->NormalHours()) * 10) / 10) +
           " hours of normal time";
}

void HandleNoWorkingTime(Desktop& desktop, const Link<Vtask>& task) {
    Link<Vassignment> first;
    std::string lines;
    int count = 0;
    for (Vassignment* assignment : task->AssignmentList()) {
        if (!assignment->Include()) continue;
        if (++count == 1) first = assignment;
        lines += (lines.empty() ? "" : kNewLine) + DescribeAssignment(*assignment);
    }
    std::string question = "Do you want to open the task?";
    if (first) {
        question = "Its assignments are:" + kNewLine + lines + kBlankLine + "Do you want to open the " +
                   (count > 1 ? "first of these assignments?" : "assignment?");
    }
    if (!AskAbout(desktop, task.Get(), *task->Project(), question)) return;
    if (first && first->Project()) ShowInProjectTree(desktop, first.Get(), *first->Project());
    desktop.trees->Commands().Modify();
}

/// The link belongs to another project. It goes if that one has a link of its own, else it takes over.
void HandleClaimedSubproject(Desktop& desktop, const Link<Vtask>& task) {
    const Link<Vproject> subproject = task->Subproject();
    if (!subproject) return desktop.workspace.RestartSolve();
    const Link<Vproject> parent = subproject->Parent();
    const auto holds = [&](const Vtask* one) {
        return one->Include() && one->Subproject() == subproject.Get();
    };
    const bool held = parent && std::any_of(parent->TaskList().begin(), parent->TaskList().end(), holds);
    Vproject& project = *task->Project();
    const std::string name = subproject->ProjectName();
    if (held || project.DescendsFrom(subproject.Get())) {
        if (!AskAbout(desktop, task.Get(), project, "Do you want to delete this link?") || !task) return;
        Vproject* rightful = subproject ? subproject->Parent() : nullptr;
        task->Delete();
        // Deleting a link makes its project a master, which it is not.
        if (subproject) subproject->SetParent(rightful);
    } else {
        if (!AskAbout(desktop, task.Get(), project,
                      "No task of another project stands for " + name +
                          ".  Do you want to make it a subproject of " + project.ProjectName() + "?") ||
            !task || !subproject)
            return;
        task->SetSubproject(subproject.Get());
    }
    project.SetDirty(true);
    desktop.workspace.BroadcastNewThisProject();
}

/// Those that leave no choice: shows the object at fault and opens what repairs it.
void HandleOther(Desktop& desktop, const SolveProblem& problem) {
    if (const Link<Vdependency> dependency = problem.dependency) {
        if (AskAbout(desktop, dependency.Get(), *dependency->Project(),
                     "Do you want to open the dependency?"))
            desktop.trees->Commands().Modify();
    } else if (problem.message == "Effort without resources") {
        if (AskAbout(desktop, problem.task.Get(), *problem.task->Project(),
                     "Do you want to assign a resource?"))
            AssignmentEntryForm::StartAdd(desktop);
    } else if (problem.task->Subproject()) {
        HandleClaimedSubproject(desktop, problem.task);
    } else {
        ShowInProjectTree(desktop, problem.task.Get(), *problem.task->Project());
    }
}

/// Whether the object at fault is still part of a project.
bool StandsStill(const SolveProblem& problem) {
    return (problem.task && problem.task->Project()) ||
           (problem.dependency && problem.dependency->Project()) ||
           (problem.assignment && problem.assignment->Project());
}

}  // namespace

void SolvePanelClick(Desktop& desktop) {
    if (desktop.solver.Mode() != SolveMode::Halted) return;
    const SolveProblem problem = desktop.solver.Problem().value_or(SolveProblem());
    const std::string word = problem.message.substr(0, problem.message.find(' '));
    if (word == "Dangling") return HandleDanglingTask(desktop);
    if (word == "Journal") return ExplainJournalSync(desktop);
    if (!StandsStill(problem)) return desktop.workspace.RestartSolve();
    if (word == "Overload" || word == "Overtime") {
        OverageForm::Start(desktop);
    } else if (problem.message == "Missing prerequisite") {
        HandleMissingPrerequisite(desktop, problem.dependency);
    } else if (word == "Missing") {
        HandleMissingDep(desktop, problem.task);
    } else if (word == "Circular") {
        CircleForm::Start(desktop);
    } else if (problem.message == "No working time") {
        HandleNoWorkingTime(desktop, problem.task);
    } else {
        HandleOther(desktop, problem);
    }
}

void ShowInProjectTree(Desktop& desktop, NodeObject object, Vproject& project) {
    Workspace& workspace = desktop.workspace;
    ProjectTreeForm& tree = desktop.trees->ProjectTree();
    if (workspace.ThisProject() == &project) {
        tree.Start();
    } else {
        workspace.SetThisProject(&project);
        workspace.BroadcastNewThisProject();
    }
    if (ChildForm* page = desktop.mainForm->FullPage()) page->Unload();
    tree.View().setFocus();
    desktop.trees->SetDragNode(&desktop.trees->FindNodeFromObject(object));
}

void DeleteDependency(Desktop& desktop, Vdependency& dependency) {
    Vtask* task = dependency.Task();
    dependency.Delete();
    if (!task || !task->Project()) return;
    desktop.trees->ProjectTree().RebuildTaskSubTree(*task, true);
    task->Project()->SetDirty(true);
}

}  // namespace vortan
