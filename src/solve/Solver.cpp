#include "solve/Solver.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

namespace vortan {

namespace {

constexpr int kCallsPerLook = 256;

std::size_t Index(std::int32_t i) {
    return static_cast<std::size_t>(i);
}

std::string NameOf(const Vtask& task) {
    return "(" + (task.Project() ? task.Project()->BuildNodeText() : "") + ") " + task.BuildNodeText();
}

}  // namespace

std::string Vslice::BuildNodeText() const {
    if (!task) return "<deleted>";
    const std::string text = NameOf(*task);
    if (fromPercent == 0 && toPercent == 100) return text;
    return std::to_string(fromPercent) + "% to " + std::to_string(toPercent) + "% of " + text;
}

std::string Vslot::BuildNodeText() const {
    std::string text = FormatDate(startTime) + " to " + FormatDate(endTime);
    if (!taskRequired) return text + " <available> ";
    const Vproject* project = taskRequired->Project();
    return text + " (" + (project ? project->ProjectName() : "") + ") " + taskRequired->BuildNodeText();
}

Solver::Solver(Workspace& workspace) : workspace_(workspace) {
    workspace_.SetSolver(this);
}

Solver::~Solver() {
    workspace_.SetSolver(nullptr);
}

void Solver::SetSolveMessage(std::string_view text) {
    message_ = text;
    workspace_.ThePlatform().SolveStatus(message_);
}

void Solver::RestartSolve() {
    if (mode_ == SolveMode::Idle || mode_ == SolveMode::Halted) {
        SetMode(SolveMode::Restart);
        workspace_.ThePlatform().ArmSolveTimer(true);
    } else if (mode_ == SolveMode::Running) {
        SetMode(SolveMode::Restart);
    }
}

void Solver::SuspendSolve() {
    SetSolveMessage("Solve suspended");
    const bool resting =
        mode_ == SolveMode::Idle || mode_ == SolveMode::Halted || mode_ == SolveMode::Restart;
    SetMode(resting ? SolveMode::Suspended : SolveMode::SuspendedRunning);
    workspace_.ThePlatform().ArmSolveTimer(false);
}

void Solver::ResumeSolve() {
    if (mode_ == SolveMode::SuspendedRunning) {
        SetMode(SolveMode::Restart);
    } else if (mode_ == SolveMode::Suspended) {
        SetMode(SolveMode::Restart);
        workspace_.ThePlatform().ArmSolveTimer(true);
    }
}

void Solver::Clear() {
    if (mode_ == SolveMode::Running) SetMode(SolveMode::Restart);
    problem_.reset();
    dangling_.clear();
    network_.Clear();
    nextNetwork_.Clear();
    bookings_ = Bookings();
    run_ = ForwardRun();
    reversed_ = orderIsNext_ = false;
}

void Solver::SolveTimerTick() {
    const Section section("Main:SolveTimer");
    workspace_.ThePlatform().ArmSolveTimer(false);
    if (onStack_) return;
    if (mode_ != SolveMode::Idle && mode_ != SolveMode::Halted && mode_ != SolveMode::Restart)
        AssertionFailed();
    SetMode(SolveMode::Restart);
    struct OnStack {
        explicit OnStack(bool& flag) : onStack(flag) { onStack = true; }
        ~OnStack() { onStack = false; }
        bool& onStack;
    } const running(onStack_);
    try {
        while (mode_ == SolveMode::Restart) {
            workspace_.ThePlatform().ArmSolveTimer(false);
            SetMode(SolveMode::Running);
            TrySolve();
        }
        if (mode_ == SolveMode::SuspendedRunning) SetMode(SolveMode::Suspended);
    } catch (...) {
        network_.TakeIndexes();
        SetMode(SolveMode::Halted);
        SetSolveMessage("Internal error");
        throw;
    }
}

void Solver::BeginIterating() {
    if (mode_ != SolveMode::Idle || !reversed_) AssertionFailed();
    SetMode(SolveMode::Iterating);
}

void Solver::EndIterating(bool restart) {
    if (mode_ == SolveMode::Iterating) {
        SetMode(SolveMode::Idle);
        if (restart) RestartSolve();
    } else if (mode_ == SolveMode::SuspendedRunning) {
        SetMode(SolveMode::Suspended);
    } else if (mode_ == SolveMode::Restart) {
        workspace_.ThePlatform().ArmSolveTimer(true);
    }
}

bool Solver::AbortSolve() {
    if (mode_ != SolveMode::Iterating) {
        workspace_.ThePlatform().ServeEvents();
        lastService_ = std::chrono::steady_clock::now();
    }
    return mode_ != SolveMode::Running && mode_ != SolveMode::Iterating;
}

/// AbortSolve at a price that a walk over all tasks can pay: events are served when the interval has passed.
bool Solver::MayStop() {
    if (--untilLook_ > 0) return false;
    untilLook_ = serviceInterval_.count() == 0 ? 1 : kCallsPerLook;
    return Pause();
}

/// AbortSolve for walks that ask seldom.
bool Solver::Pause() {
    if (std::chrono::steady_clock::now() - lastService_ < serviceInterval_) return false;
    return AbortSolve();
}

bool Solver::Stop(std::int32_t slice) {
    if (std::chrono::steady_clock::now() - lastService_ < serviceInterval_) return false;
    const auto& task = network_.Tasks()[Index(network_.Slices()[Index(slice)].task)];
    if (mode_ == SolveMode::Running) SetSolveMessage("Solving " + task.object->BuildNodeText() + " ...");
    return AbortSolve();
}

void Solver::SolveError(const SolveProblem& problem) {
    network_.TakeIndexes();  // a network that did not come to its pass may have them
    SetMode(SolveMode::Halted);
    problem_ = problem;
    SetSolveMessage(problem.message);
}

void Solver::TrySolve() {
    lastService_ = std::chrono::steady_clock::now();
    untilLook_ = 0;
    problem_.reset();
    if (!workspace_.ProjectList().empty()) DoEverything();
    if (mode_ != SolveMode::Running) return;
    SetMode(SolveMode::Idle);
    SetSolveMessage(workspace_.ProjectList().empty() ? "No projects loaded" : "Solve complete");
    workspace_.BroadcastNewSolution();
}

void Solver::DoEverything() {
    const Section section("Solve:DoEverything");
    SetSolveMessage("Preparing for solve ...");
    VerifyJournalSync();
    if (AbortSolve()) return;
    if (!CheckAllTasks() || AbortSolve()) return;
    if (!ComputeOrder() || AbortSolve()) return;
    if (!CheckOpenEnds() || AbortSolve()) return;
    SetSolveMessage("Clearing previous solution ...");
    if (AbortSolve() || !ResetPriorToSolve()) return;
    if (!ForwardPass() || AbortSolve()) return;
    SetSolveMessage("Computing slack ...");
    if (ReversePass()) AbortSolve();
}

void Solver::VerifyJournalSync() {
    const JournalOwner* active = workspace_.ThisProject();
    if (!active) active = workspace_.ThisTemplate();
    if (!active) return;
    const DateTime date = active->Journal();
    for (const Vproject* project : workspace_.ProjectList()) {
        if (project->Journal() != date) {
            SolveProblem problem;
            problem.message = "Journal sync error";
            SolveError(problem);
            return;
        }
    }
    for (Vtemplate* each : workspace_.TemplateList()) each->AddJournal(date);
}

bool Solver::CheckAllTasks() {
    const Section section("Solve:CheckAllTasks");
    bool stopped = false;
    orderIsNext_ = false;
    dangling_.clear();
    const auto problem = nextNetwork_.Check(workspace_, [&] { return stopped = MayStop(); });
    if (problem) SolveError(*problem);
    return !problem && !stopped;
}

bool Solver::ComputeOrder() {
    const Section section("Solve:ComputeOrder");
    bool stopped = false;
    const auto problem = nextNetwork_.ComputeOrder([&] { return stopped = Pause(); });
    if (stopped) return false;
    orderIsNext_ = true;
    if (problem) SolveError(*problem);
    return !problem;
}

/// A master project must have one end only.
bool Solver::CheckOpenEnds() {
    nextNetwork_.FindDangling(dangling_);
    if (dangling_.empty()) return true;
    SolveProblem open;
    open.message = "Dangling tasks";
    open.task = Slice(dangling_.front()).task;
    SolveError(open);
    return false;
}

bool Solver::ResetPriorToSolve() {
    std::swap(network_, nextNetwork_);
    orderIsNext_ = reversed_ = false;
    bookings_.Reset(network_);
    run_.Prepare(network_, bookings_);
    return !Pause();
}

bool Solver::ForwardPass() {
    const Section section("Solve:SolveAllSlices");
    run_.Watch(network_.IndexOf(watched_.Get()));
    const auto outcome = run_.SolveAllSlices(this);
    if (outcome == ForwardRun::Outcome::Done) return true;
    if (outcome == ForwardRun::Outcome::Stopped) return false;
    WriteResults();
    if (outcome == ForwardRun::Outcome::NoTime) {
        SolveProblem problem;
        problem.message = "No working time";
        problem.task = network_.Tasks()[Index(run_.ProblemTask())].object;
        SolveError(problem);
    } else {
        ReportShortage();
    }
    return false;
}

void Solver::ReportShortage() {
    const auto& task = network_.Tasks()[Index(run_.ProblemTask())];
    const std::int32_t rule = network_.Projects()[Index(task.project)].rule;
    const Vresource* resource = network_.Resources()[Index(run_.ProblemResource())].object.Get();
    SolveProblem problem;
    problem.message = ForwardRun::ShortageText(rule);
    problem.problemDate = DateTime(run_.ProblemDate());
    const int weekday = Weekday(problem.problemDate);
    for (Vassignment* assignment : task.object->AssignmentList()) {
        if (!assignment->Include() || !assignment->WorkDay(weekday)) continue;
        if (assignment->ResourceRequired() != resource) continue;
        problem.assignment = assignment;
        problem.requestedHours += assignment->Hours();
    }
    problem.assignedHours = problem.requestedHours - run_.ProblemMinutesLeft() / 60.0;
    SolveError(problem);
}

/// Writes what the passes found into the model: the late dates only when the reverse pass has run.
void Solver::WriteResults() {
    const auto tasks = network_.Tasks();
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        Vtask& task = *tasks[i].object.Get();
        const auto& clock = run_.Clocks()[i];
        task.SetEarlyStart(DateTime(clock.start));
        task.SetEarlyFinish(DateTime(clock.finish));
        task.SetLaborCost(clock.laborCost);
        if (tasks[i].subproject >= 0 && tasks[i].firstSlice < run_.SlicesBegun()) {
            task.SetMaterialCost(clock.materialCost);
        }
        if (reversed_) {
            task.SetLateStart(DateTime(reverse_.Tasks()[i].start));
            task.SetLateFinish(DateTime(reverse_.Tasks()[i].finish));
        }
        WriteDependencyDates(tasks[i]);
    }
}

/// The date of every dependency that the pass has looked at, as it was at the last look: a slice looks at
/// those up to where it begins, and at all of them if its task has no estimate.
void Solver::WriteDependencyDates(const Network::Task& task) {
    if (task.subproject >= 0) return;
    const auto slices = network_.Slices();
    const bool complete = Index(run_.SlicesBegun()) == slices.size();
    for (const auto& source : network_.SourcesOf(task)) {
        if (source.slice < 0) continue;
        // The last look of a complete pass is behind everything.
        std::int32_t looked = complete ? run_.SlicesBegun() : -1;
        for (std::int32_t i = task.firstSlice; !complete && i >= 0 && i < run_.SlicesBegun();
             i = slices[Index(i)].next) {
            if (task.effortUnits == 0 || slices[Index(i)].from >= source.toPercent) looked = i;
        }
        if (looked < 0) continue;
        const double date = source.slice < looked ? run_.SliceFinish()[Index(source.slice)] : 0;
        source.object->SetDepDate(DateTime(date));
    }
}

/// The finish of a project in its plan journal, in days.
double Solver::PlanFinish(const Network::Project& project,
                          const std::vector<ForwardRun::Clock>& clocks) const {
    const Vproject& object = *project.object.Get();
    const std::int32_t plan = object.PlanIndex();
    if (plan != object.CurrentIndex()) {
        // What this solve finds runs forward into later journals.
        bool any = false;
        double finish = 0;
        for (const Vtask* task : object.TaskList()) {
            if (!task->IncludeAt(plan)) continue;
            const std::int32_t index = plan > object.CurrentIndex() ? network_.IndexOf(task) : -1;
            const double at = index >= 0 ? clocks[Index(index)].finish : task->EarlyFinishAt(plan).Days();
            finish = any ? std::max(finish, at) : at;
            any = true;
        }
        return finish;
    }
    return ForwardRun::Totals(project, clocks).finish;
}

void Solver::PlanFinishes(const std::vector<ForwardRun::Clock>& clocks, std::vector<double>& finishes) const {
    const auto projects = network_.Projects();
    finishes.resize(projects.size());
    for (std::size_t i = 0; i < projects.size(); ++i) {
        const auto master = Index(projects[i].master);
        // A master ahead in the list is known already: a plan of many subprojects looks it up once.
        finishes[i] = master < i && Index(projects[master].master) == master
                          ? finishes[master]
                          : PlanFinish(projects[master], clocks);
    }
}

bool Solver::ReversePass() {
    const Section section("Solve:ReverseSolve");
    PlanFinishes(run_.Clocks(), planFinish_);
    if (!reverse_.Run(network_, run_, planFinish_, [this] { return Pause(); })) return false;
    reversed_ = true;
    WriteResults();
    return true;
}

Vslice Solver::Slice(std::int32_t index) const {
    const auto at = Index(index);
    const auto& slice = Order().Slices()[at];
    Vslice view;
    view.task = Order().Tasks()[Index(slice.task)].object.Get();
    view.fromPercent = slice.from;
    view.toPercent = slice.to;
    if (orderIsNext_) return view;
    view.earlyStart = DateTime(run_.SliceStart()[at]);
    view.earlyFinish = DateTime(run_.SliceFinish()[at]);
    view.laborCost = run_.SliceCost()[at];
    if (reversed_) {
        view.lateStart = DateTime(reverse_.Slices()[at].start);
        view.lateFinish = DateTime(reverse_.Slices()[at].finish);
    }
    return view;
}

Vslot Solver::ViewOf(const SlotView& slot) const {
    Vtask* task = slot.task >= 0 ? network_.Tasks()[Index(slot.task)].object.Get() : nullptr;
    return {slot.startTime, slot.endTime, SlotTypeOf(slot.kind), task, slot.laborCost};
}

std::vector<Vslot> Solver::Slots(const Vresource& resource, std::int32_t day) const {
    std::vector<Vslot> slots;
    const std::int32_t index = network_.IndexOf(&resource);
    if (index < 0) return slots;
    bookings_.ForEachSlot(index, day, [&](const SlotView& slot) { slots.push_back(ViewOf(slot)); });
    return slots;
}

std::vector<Vslot> Solver::HeldSlots(const Vresource& resource) const {
    std::vector<Vslot> slots;
    const std::int32_t index = network_.IndexOf(&resource);
    if (index < 0) return slots;
    std::int32_t first, last;
    bookings_.DayRange(index, first, last);
    for (std::int32_t day = first; day < last; ++day) {
        bookings_.ForEachSlot(index, day, [&](const SlotView& slot) {
            if (slot.task >= 0) slots.push_back(ViewOf(slot));
        });
    }
    return slots;
}

std::int32_t Solver::CountMinutes(const Vresource& resource, const Vtask& task, DateTime from,
                                  DateTime to) const {
    const std::int32_t index = network_.IndexOf(&resource);
    const std::int32_t taskIndex = network_.IndexOf(&task);
    if (index < 0 || taskIndex < 0) return 0;
    std::int32_t first, last;
    bookings_.DayRange(index, first, last);
    const double begin = std::max<double>(first, from.WholeDay());
    const double end = std::min<double>(last - 1, to.WholeDay());
    std::int32_t minutes = 0;
    for (double day = begin; day <= end; ++day) {
        bookings_.ForEachSlot(index, static_cast<std::int32_t>(day), [&](const SlotView& slot) {
            if (slot.task == taskIndex)
                minutes += Bookings::Minutes(slot.startTime.Days(), slot.endTime.Days());
        });
    }
    return minutes;
}

}  // namespace vortan
