#include "solve/IterativeSolve.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <new>
#include <thread>

#include "model/Conventions.h"
#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "solve/CrashSolve.h"
#include "solve/ProblemText.h"
#include "solve/RiskSolve.h"
#include "solve/ShortenCrew.h"
#include "solve/Solution.h"

namespace vortan {

namespace {

constexpr double kGigabyte = 1024.0 * 1024 * 1024;
/// A solve that would take more is refused: it would bring the machine to a halt before it ended.
constexpr double kMostMemory = 2 * kGigabyte;

std::string Gigabytes(double bytes) {
    char text[40];
    std::snprintf(text, sizeof text, "%.1f GB", bytes / kGigabyte);
    return LocalNumber(text);
}

std::string FailureText(const Network& network, ForwardRun::Outcome outcome, std::int32_t task) {
    const auto& at = network.Tasks()[Index(task)];
    const std::string name = NameTask(*at.object.Get());
    if (outcome == ForwardRun::Outcome::NoTime) {
        return "\"" + std::string(TextOf(SolveProblem::Kind::NoWorkingTime)) + "\", " + name +
               " would not end before the calendar does. Check its estimates.";
    }
    const auto& project = network.Projects()[Index(at.project)];
    return std::string("\"") + TextOf(ForwardRun::ShortageUnder(project.rule)) + "\", at " + name +
           ". Give project " + project.object->ProjectName() +
           " a solve rule that extends, so that no run halts.";
}

}  // namespace

std::optional<std::string> IterativeSolve::CheckRisk(double iterations) const {
    if (!(iterations >= 1 && iterations <= kMostIterations)) {
        return "The number of iterations must be a whole number from 1 to " + GroupDigits(kMostIterations) +
               ".";
    }
    const auto wanted = static_cast<std::int32_t>(iterations);
    const auto needed = [this](std::int32_t n) {
        return vortan::RiskSolve::MemoryNeeded(solver_, n, Workers());
    };
    if (needed(wanted) <= kMostMemory) return std::nullopt;
    std::string text = "A risk solve of " + GroupDigits(wanted) + " iterations over " +
                       GroupDigits(solver_.SliceCount()) + " slices needs about " +
                       Gigabytes(needed(wanted)) + " of memory, and no more than " + Gigabytes(kMostMemory) +
                       " may be used.";
    std::int32_t fits = 0, unit = 1;
    for (std::int32_t step = 1 << 20; step > 0; step /= 2) {
        if (fits + step < wanted && needed(fits + step) <= kMostMemory) fits += step;
    }
    while (fits / unit >= 100) unit *= 10;
    fits = fits / unit * unit;
    return fits < 1 ? text : text + " Enter " + GroupDigits(fits) + " or less.";
}

std::optional<std::string> IterativeSolve::CheckIncrement(double increment) {
    if (increment >= kLeastIncrement && increment <= kMostIncrement) return std::nullopt;
    return "The team increment must be a number from 0.1 to 1.0.";
}

Vproject* IterativeSolve::FindHaltingProject(const Workspace& workspace) {
    for (Vproject* project : workspace.ProjectList()) {
        if (Halts(project->SolveRules())) return project;
    }
    return nullptr;
}

std::string IterativeSolve::HaltRuleText(const Vproject& project) {
    return "The project " + project.BuildNodeText() +
           " has a solve rule that halts on an error.  Crash requires that the rule be changed so that it "
           "will continue (extend) and not halt.";
}

IterativeSolve::Outcome IterativeSolve::RiskSolve(bool quick, std::int32_t iterations,
                                                  IterativeProgress* progress, bool drivers) {
    const Section section("Solve:RiskSolve");
    if (auto complaint = CheckRisk(iterations)) return {false, *complaint};
    return Frame("Risk solve in progress", "Risk", progress, [&](IterationWatch& watch) -> std::string {
        Rnd rnd = rnd_;
        vortan::RiskSolve solve(solver_, ActiveProject(), iterations, Workers());
        if (drivers) solve.WithDrivers();
        solve.PrepareRiskSolve(rnd);
        if (quick) {
            solve.QuickRiskSolve(watch);
        } else {
            solve.DetailedRiskSolve(watch);
        }
        if (watch.WasCancelled()) return "";
        if (const auto& failure = solve.FirstFailure()) {
            return "The risk solve was broken off in iteration " + GroupDigits(failure->iteration) + ": " +
                   FailureText(solver_.Standing().network, failure->outcome, failure->task);
        }
        solve.MoveResults(results_);
        rnd_ = rnd;
        return "";
    });
}

IterativeSolve::Outcome IterativeSolve::CrashSolve(bool quick, double increment,
                                                   IterativeProgress* progress) {
    const Section section("Solve:CrashSolve");
    if (auto complaint = CheckIncrement(increment)) return {false, *complaint};
    if (const Vproject* halting = FindHaltingProject(workspace_)) return {false, HaltRuleText(*halting)};
    return Frame("Crash solve in progress", "Crashing", progress, [&](IterationWatch& watch) -> std::string {
        vortan::CrashSolve solve(solver_, ActiveProject(), static_cast<float>(increment));
        if (quick) {
            solve.QuickCrashSolve(watch);
        } else {
            solve.DetailedCrashSolve(watch);
        }
        if (watch.WasCancelled()) return "";
        if (const auto& failure = solve.Failure()) {
            return "The crash solve was broken off: " +
                   FailureText(solver_.Standing().network, *failure, solve.FailedTask());
        }
        results_.crashList = std::move(solve.CrashList());
        results_.teamIncrement = static_cast<float>(increment);
        return "";
    });
}

std::optional<std::string> IterativeSolve::CheckShorten(const ShortenOptions& options) {
    if (options.moves != 0) {
        if (options.moves >= 1 && options.moves <= ShortenOptions::kMostMoves &&
            options.moves == std::floor(options.moves))
            return std::nullopt;
        return "The number of moves must be a whole number from 1 to 1,000,000,000,000,000.";
    }
    if (options.seconds > 0 && options.seconds <= ShortenOptions::kMostSeconds) return std::nullopt;
    return "The number of seconds must be above 0 and no more than " +
           GroupDigits(static_cast<std::int64_t>(ShortenOptions::kMostSeconds)) + ".";
}

IterativeSolve::Outcome IterativeSolve::ShortenSolve(const ShortenOptions& options,
                                                     IterativeProgress* progress) {
    const Section section("Solve:ShortenSolve");
    if (auto complaint = CheckShorten(options)) return {false, *complaint};
    foundRanks_.clear();
    const Outcome outcome =
        Frame("Shorten solve in progress", "Shortening", progress, [&](IterationWatch& watch) -> std::string {
            ShortenCrew solve(solver_, ActiveProject(), options, Workers());
            solve.Run(solver_, watch);
            results_.shorten = solve.Result();
            foundRanks_ = solve.Ranks();
            return "";
        });
    if (outcome.done) KeepShortened();
    return outcome;
}

bool IterativeSolve::KeepShortened() {
    for (const auto& [task, rank] : foundRanks_) {
        if (task) task->SetSolveRank(rank);
    }
    return !std::exchange(foundRanks_, {}).empty();
}

bool IterativeSolve::SolveInToldOrder() {
    const bool any = IsShortened();
    for (Vproject* project : workspace_.ProjectList()) {
        for (Vtask* task : project->TaskList()) task->SetSolveRank(0);
    }
    return any;
}

bool IterativeSolve::IsShortened() const {
    for (const Vproject* project : workspace_.ProjectList()) {
        for (const Vtask* task : project->TaskList()) {
            if (task->SolveRank() != 0) return true;
        }
    }
    return false;
}

/// Puts mode and texts back however the solve ends.
IterativeSolve::Outcome IterativeSolve::Frame(const char* status, const char* verb,
                                              IterativeProgress* progress,
                                              const std::function<std::string(IterationWatch&)>& solve) {
    const std::string messageBefore = solver_.SolveMessage();
    const auto end = [&](bool done) {
        if (!done) solver_.SetSolveMessage(messageBefore);
        solver_.EndIterating(done);
        workspace_.ThePlatform().StatusMessage("");
    };
    Outcome outcome;
    workspace_.ThePlatform().StatusMessage(status);
    solver_.BeginIterating();
    try {
        IterationWatch watch(solver_, verb, progress, interval_);
        outcome.message = solve(watch);
        outcome.done = outcome.message.empty() && !watch.WasCancelled();
    } catch (const std::bad_alloc&) {
        outcome.message = "There is not enough memory for this solve.";
    } catch (...) {
        end(false);
        throw;
    }
    end(outcome.done);
    return outcome;
}

std::int32_t IterativeSolve::ActiveProject() const {
    const std::int32_t index = solver_.Standing().network.IndexOf(workspace_.ThisProject());
    if (index < 0) AssertionFailed();
    return index;
}

int IterativeSolve::Workers() const {
    return workers_ > 0 ? workers_ : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

}  // namespace vortan
