#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "solve/IterationWatch.h"
#include "solve/IterativeResults.h"
#include "solve/Rnd.h"
#include "solve/Solver.h"

namespace vortan {

/// How long to search for a shorter order, and for what.
struct ShortenOptions {
    static constexpr double kUsualSeconds = 10, kMostSeconds = 86400;
    static constexpr double kMostMoves = 1e15;

    double seconds = kUsualSeconds;
    double moves = 0;  ///< a whole number; above 0 it takes the place of the seconds
    std::uint64_t seed = 0;
    bool forCost = false;  ///< least cost first, then earliest finish
};

/// The risk and crash solves of a program: what they need from one to the next, and the frame of each, which
/// is status texts, the solver's mode, progress and cancel. The results change only when a solve has come to
/// its end.
class IterativeSolve {
  public:
    static constexpr std::int32_t kUsualIterations = 100, kMostIterations = 1'000'000;
    static constexpr double kUsualIncrement = 0.25, kLeastIncrement = 0.1, kMostIncrement = 1;

    /// How a solve ended. A solve that failed says why; one that was cancelled has nothing to say.
    struct Outcome {
        bool done = false;
        std::string message;
    };

    /// Both must outlive this.
    IterativeSolve(Workspace& workspace, Solver& solver) : workspace_(workspace), solver_(solver) {}

    // What must be asked before a solve, which asks it again itself. Each gives the complaint, none if all is
    // well. The solution of the active project must stand.
    std::optional<std::string> CheckRisk(double iterations) const;
    static std::optional<std::string> CheckIncrement(double increment);
    static std::optional<std::string> CheckShorten(const ShortenOptions& options);
    /// The first project whose solve rule halts; a crash solve needs rules that extend.
    static Vproject* FindHaltingProject(const Workspace& workspace);
    static std::string HaltRuleText(const Vproject& project);

    // Repeats or crashes the active project, which must be solved (Workspace::ThisProjectSolved); asks for an
    // ordinary solve in the end. `progress` may be none.
    /// With `drivers`, also what drives the spread, which takes some more trials.
    Outcome RiskSolve(bool quick, std::int32_t iterations, IterativeProgress* progress, bool drivers = false);
    Outcome CrashSolve(bool quick, double increment, IterativeProgress* progress);

    /// Searches for an order that ends the active project, solved like that, earlier, and gives its ranks to
    /// the tasks. One that was cancelled leaves the ranks alone, until KeepShortened.
    Outcome ShortenSolve(const ShortenOptions& options, IterativeProgress* progress);
    /// After a search that was cancelled: keeps the best order that it found. False: none was better.
    bool KeepShortened();
    /// Takes the ranks off all tasks in memory, in the journal in force: one order runs through all
    /// projects, so the told one is back only without any. False: there were none.
    bool SolveInToldOrder();
    /// Whether tasks in memory have ranks.
    bool IsShortened() const;

    const IterativeResults& Results() const { return results_; }
    /// Another project became active: the crash curve was not its own.
    void NewThisProject() { results_.crashList.clear(); }

    void SetSeed(std::uint64_t seed) { rnd_ = Rnd(seed); }
    /// Threads that a risk solve and a search for a shorter order use; 0 is one for each core.
    void SetWorkers(int workers) { workers_ = workers; }
    /// Shortest time between two reports of progress. Zero reports at every opportunity.
    void SetProgressInterval(std::chrono::milliseconds interval) { interval_ = interval; }

  private:
    Outcome Frame(const char* status, const char* verb, IterativeProgress* progress,
                  const std::function<std::string(IterationWatch&)>& solve);
    std::int32_t ActiveProject() const;
    int Workers() const;

    Workspace& workspace_;
    Solver& solver_;
    IterativeResults results_;
    std::vector<std::pair<Link<Vtask>, std::int32_t>> foundRanks_;  ///< of the last search, if it was better
    Rnd rnd_;
    int workers_ = 0;
    std::chrono::milliseconds interval_{200};
};

}  // namespace vortan
