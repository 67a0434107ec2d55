#include "solve/Solver.h"

#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "model/Workspace.h"
#include "solve/Solution.h"

namespace vortan {

namespace {

constexpr int kCallsPerLook = 256;

}  // namespace

Solver::Solver(Workspace& workspace)
    : workspace_(workspace), standing_(std::make_unique<Solution>()), next_(std::make_unique<Network>()) {
    workspace_.SetSolver(this);
}

Solver::~Solver() {
    workspace_.SetSolver(nullptr);
}

void Solver::SetSolveMessage(std::string_view text) {
    message_ = text;
    workspace_.ThePlatform().SolveStatus(message_);
}

void Solver::Watch(const Vtask* task) {
    watched_ = task;
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
    // In place: a solve that is on the stack comes back to them.
    *standing_ = Solution();
    *next_ = Network();
    orderIsNext_ = false;
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
        standing_->network.TakeIndexes();
        SetMode(SolveMode::Halted);
        SetSolveMessage("Internal error");
        throw;
    }
}

void Solver::BeginIterating() {
    if (mode_ != SolveMode::Idle || !standing_->reversed) AssertionFailed();
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

bool Solver::StopAt(std::int32_t slice) {
    if (std::chrono::steady_clock::now() - lastService_ < serviceInterval_) return false;
    const Network& network = standing_->network;
    const auto& task = network.Tasks()[Index(network.Slices()[Index(slice)].task)];
    if (mode_ == SolveMode::Running) SetSolveMessage("Solving " + task.object->BuildNodeText() + " ...");
    return AbortSolve();
}

void Solver::SolveError(const SolveProblem& problem) {
    standing_->network.TakeIndexes();  // a network that did not come to its pass may have them
    SetMode(SolveMode::Halted);
    problem_ = problem;
    SetSolveMessage(problem.Message());
}

void Solver::TrySolve() {
    lastService_ = std::chrono::steady_clock::now();
    untilLook_ = 0;
    problem_.reset();
    if (!workspace_.ProjectList().empty()) DoEverything();
    if (mode_ != SolveMode::Running) return;
    SetMode(SolveMode::Idle);
    SetSolveMessage(workspace_.ProjectList().empty() ? "No projects loaded"
                    : standing_->network.Ranked()    ? "Solve complete, in a shortened order"
                                                     : "Solve complete");
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
            return SolveError({.kind = SolveProblem::Kind::JournalSync});
        }
    }
    for (Vtemplate* each : workspace_.TemplateList()) each->AddJournal(date);
}

bool Solver::CheckAllTasks() {
    const Section section("Solve:CheckAllTasks");
    bool stopped = false;
    orderIsNext_ = false;
    dangling_.clear();
    const auto problem = next_->Check(workspace_, [&] { return stopped = MayStop(); });
    if (problem) SolveError(*problem);
    return !problem && !stopped;
}

bool Solver::ComputeOrder() {
    const Section section("Solve:ComputeOrder");
    bool stopped = false;
    const auto problem = next_->ComputeOrder([&] { return stopped = Pause(); });
    if (stopped) return false;
    orderIsNext_ = true;
    if (problem) SolveError(*problem);
    return !problem;
}

/// A master project must have one end only.
bool Solver::CheckOpenEnds() {
    next_->FindDangling(dangling_);
    if (dangling_.empty()) return true;
    SolveError({.kind = SolveProblem::Kind::Dangling, .task = Slice(dangling_.front()).task});
    return false;
}

bool Solver::ResetPriorToSolve() {
    std::swap(standing_->network, *next_);
    orderIsNext_ = standing_->reversed = false;
    standing_->bookings.Reset(standing_->network);
    standing_->run.Prepare(standing_->network, standing_->bookings);
    return !Pause();
}

bool Solver::ForwardPass() {
    const Section section("Solve:SolveAllSlices");
    struct Poll : ForwardRun::Poll {
        explicit Poll(Solver& theSolver) : solver(theSolver) {}
        bool Stop(std::int32_t slice) override { return solver.StopAt(slice); }
        Solver& solver;
    } poll(*this);
    ForwardRun& run = standing_->run;
    run.Watch(standing_->network.IndexOf(watched_.Get()));
    const auto outcome = run.SolveAllSlices(&poll);
    if (outcome == ForwardRun::Outcome::Done) return true;
    if (outcome == ForwardRun::Outcome::Stopped) return false;
    standing_->WriteResults();
    if (outcome == ForwardRun::Outcome::NoTime) {
        SolveError({.kind = SolveProblem::Kind::NoWorkingTime,
                    .task = standing_->network.Tasks()[Index(run.ProblemTask())].object});
    } else {
        ReportShortage();
    }
    return false;
}

void Solver::ReportShortage() {
    const Network& network = standing_->network;
    const ForwardRun& run = standing_->run;
    const auto& task = network.Tasks()[Index(run.ProblemTask())];
    const Vresource* resource = network.Resources()[Index(run.ProblemResource())].object.Get();
    SolveProblem problem{ForwardRun::ShortageUnder(network.Projects()[Index(task.project)].rule)};
    problem.problemDate = DateTime(run.ProblemDate());
    const int weekday = Weekday(problem.problemDate);
    for (Vassignment* assignment : task.object->AssignmentList()) {
        if (!assignment->Include() || !assignment->WorkDay(weekday)) continue;
        if (assignment->ResourceRequired() != resource) continue;
        problem.assignment = assignment;
        problem.requestedHours += assignment->Hours();
    }
    problem.assignedHours = problem.requestedHours - run.ProblemMinutesLeft() / 60.0;
    SolveError(problem);
}

bool Solver::ReversePass() {
    const Section section("Solve:ReverseSolve");
    Solution& found = *standing_;
    found.PlanFinishes(found.run.Clocks(), planFinish_);
    if (!found.reverse.Run(found.network, found.run, planFinish_, [this] { return Pause(); })) return false;
    found.reversed = true;
    found.WriteResults();
    return true;
}

}  // namespace vortan
