// ShortenSolve where all people work the same hours: the search in working time.

#include <algorithm>
#include <cmath>

#include "solve/ShortenFlat.h"
#include "solve/ShortenSolve.h"
#include "solve/TabuSearch.h"
#include "solve/WorkTime.h"

namespace vortan {

namespace {

/// Makes a flat plan of a part of a network, if that has one.
class Flattening {
  public:
    Flattening(const Network& network, const std::vector<char>& inFamily, std::int32_t project)
        : network_(network), inFamily_(inFamily), project_(project) {}

    /// False: the calendar matters in other ways than the working hours of all.
    bool Make(const std::vector<double>& limits);

    FlatPlan plan;
    WorkTime hours;
    std::vector<std::int32_t> taskOf;  ///< by operation
    std::int64_t origin = 0;           ///< working minutes at which those of the plan begin

  private:
    bool TakesHours(std::int32_t slice) const;
    bool AddOperation(std::int32_t slice);
    std::optional<double> FixedFinish(const Network::Task& task, std::int32_t minutes) const;

    const Network& network_;
    const std::vector<char>& inFamily_;
    std::int32_t project_;
    std::vector<std::int32_t> operationOf_;  ///< by slice
    std::vector<std::int64_t> releases_;
    std::vector<std::pair<std::int32_t, std::int32_t>> arrows_;
};

/// The finish of a task that depends on dates alone and takes nobody.
std::optional<double> Flattening::FixedFinish(const Network::Task& task, std::int32_t minutes) const {
    double date = 0;
    for (const auto& source : network_.SourcesOf(task)) {
        if (source.slice >= 0) return std::nullopt;
        date = std::max(date, source.date + source.offset);
    }
    if (task.effortUnits > 0) return AddMinutes(DateTime(date), minutes).Days();
    return date == DateTime(date).WholeDay() ? date + 1 : date;
}

bool Flattening::AddOperation(std::int32_t s) {
    const auto& slice = network_.Slices()[Index(s)];
    const auto& task = network_.Tasks()[Index(slice.task)];
    if (slice.from != 0 || slice.to != 100) return false;
    FlatPlan::Operation operation;
    operation.group = task.project;
    std::int64_t release = 0;
    if (task.subproject >= 0) {
        if (network_.Projects()[Index(task.subproject)].taskCount == 0) return false;
    } else if (task.effortUnits >= 0 && (task.effortUnits == 0 || slice.useMinutes > 0)) {
        const auto finish = FixedFinish(task, slice.useMinutes);
        if (!finish) return false;
        release = hours.MinutesAt(*finish);
    } else {
        for (const auto& source : network_.SourcesOf(task)) {
            if (source.slice >= 0 && source.offset != 0) return false;
            if (source.slice < 0) release = std::max(release, hours.MinutesAt(source.date + source.offset));
        }
        if (slice.useMinutes > 0) {
            operation.minutes = slice.useMinutes;
            operation.machine = network_.WantsOf(task).front().resource;
        }
    }
    operationOf_[Index(s)] = static_cast<std::int32_t>(plan.operations.size());
    plan.operations.push_back(operation);
    releases_.push_back(release);
    taskOf.push_back(slice.task);
    return true;
}

/// Whether a slice needs nobody, or one person for all of the hours.
bool Flattening::TakesHours(std::int32_t s) const {
    const auto& slice = network_.Slices()[Index(s)];
    const auto& task = network_.Tasks()[Index(slice.task)];
    return task.subproject >= 0 || task.effortUnits >= 0 || slice.useMinutes <= 0 ||
           (task.wantCount == 1 && network_.Projects()[Index(task.project)].rule == SolveRule::NormalExtend);
}

bool Flattening::Make(const std::vector<double>& limits) {
    const auto slices = network_.Slices();
    if (!network_.OnMinuteGrid()) return false;
    std::vector<std::int32_t> wanted;
    for (std::size_t s = 0; s < slices.size(); ++s) {
        const auto& task = network_.Tasks()[Index(slices[s].task)];
        if (inFamily_[Index(task.project)] == 0) continue;
        wanted.push_back(static_cast<std::int32_t>(s));
        if (!TakesHours(wanted.back())) return false;
        const bool works = task.effortUnits < 0 && slices[s].useMinutes > 0 && task.subproject < 0;
        if (works && !hours.Takes(network_, network_.WantsOf(task).front())) return false;
    }
    if (hours.Empty()) return false;
    operationOf_.assign(slices.size(), -1);
    for (const std::int32_t s : wanted) {
        if (!AddOperation(s)) return false;
    }
    for (const std::int32_t s : wanted) {
        for (const auto& edge : network_.EdgesOf(slices[Index(s)]))
            arrows_.emplace_back(operationOf_[Index(s)], operationOf_[Index(edge.slice)]);
    }
    plan.SetArrows(arrows_);
    plan.machines = static_cast<std::int32_t>(network_.Resources().size());
    // The plan begins with what is released first; what nothing but other tasks holds back is no start.
    origin = INT64_MAX;
    std::int64_t last = 0, all = 0;
    for (std::size_t i = 0; i < releases_.size(); ++i) {
        if (plan.operations[i].beforeCount == 0) origin = std::min(origin, releases_[i]);
        last = std::max(last, releases_[i]);
        all += plan.operations[i].minutes;
    }
    if (last - origin + all > INT32_MAX / 4) return false;
    for (std::size_t i = 0; i < releases_.size(); ++i)
        plan.operations[i].release =
            static_cast<std::int32_t>(std::max<std::int64_t>(releases_[i] - origin, 0));
    plan.limits.assign(network_.Projects().size(), INT32_MAX);
    for (auto& o : plan.operations) {  // group 0 is the active project
        o.group = o.group == project_ ? 0 : o.group == 0 ? project_ : o.group;
    }
    for (std::size_t p = 0; p < limits.size(); ++p) {
        const std::size_t group = static_cast<std::int32_t>(p) == project_ ? 0 : p == 0 ? Index(project_) : p;
        const std::int64_t limit = hours.MinutesAt(limits[p]) - origin;
        plan.limits[group] = static_cast<std::int32_t>(std::clamp<std::int64_t>(limit, 0, INT32_MAX));
    }
    return true;
}

}  // namespace

/// One search in working time: tabu steps first, which find the good sequences, then annealing, which knows
/// what may be interrupted.
struct ShortenSolve::FlatSolve {
    FlatSolve(const Flattening& from, std::uint64_t seed)
        : flat(from), annealing(flat.plan, seed), mayTabu(TabuSearch::Fits(flat.plan)) {
        FlatSearch::Order standing(flat.plan.operations.size());
        for (std::size_t i = 0; i < standing.size(); ++i) standing[i] = static_cast<std::int32_t>(i);
        annealing.Try(standing);
        if (!annealing.Optimal()) annealing.TryRules();
        if (!annealing.Optimal() && mayTabu) {
            tabu.emplace(flat.plan, seed);
            tabu->Begin(annealing.BestOrder());
        }
    }
    /// Both ways go on for a few moves of their totals.
    std::int64_t Step(std::int64_t moves, std::int64_t tabuTotal, std::int64_t annealTotal) {
        if (tabuMade < tabuTotal) {
            const std::int64_t made =
                tabu->Run(std::min(moves, tabuTotal - tabuMade), annealing.LowerBound());
            tabuMade = made < moves ? tabuTotal : tabuMade + made;
            if (tabuMade >= tabuTotal || tabu->Finish() <= annealing.LowerBound())
                annealing.Try(tabu->BestOrder());
            return made;
        }
        return annealing.Anneal(moves, annealTotal);
    }
    /// Minutes of the plan.
    std::int32_t Finish() const {
        return tabu && annealing.Late() == 0 ? std::min(tabu->Finish(), annealing.Finish())
                                             : annealing.Finish();
    }

    const Flattening& flat;
    FlatSearch annealing;
    bool mayTabu;
    std::optional<TabuSearch> tabu;
    std::int64_t tabuMade = 0;
};

/// As many moves as asked for, or as fit into the time, which a search beside the real one tells. False: it
/// was cancelled.
bool ShortenSolve::RunFlat(FlatSolve& solve, IterationWatch& watch) {
    constexpr std::int64_t kStep = 64;
    constexpr double kTabuPart = 0.4, kTrial = 0.02;
    constexpr std::int64_t kManyMoves = 1 << 20;
    const bool timed = options_.moves <= 0;
    const double tabuPart = solve.tabu ? kTabuPart : 0;
    double total = options_.moves;
    if (timed) {
        FlatSolve trial(solve.flat, options_.seed);
        const auto each = [&](std::int64_t tabuTotal) {
            const double begin = Passed();
            std::int64_t made = 0;
            while (Passed() < begin + kTrial * options_.seconds && !trial.annealing.Optimal()) {
                const std::int64_t step = trial.Step(kStep, tabuTotal, kManyMoves);
                if (step == 0) break;
                made += step;
            }
            trial.tabuMade = 0;
            return (Passed() - begin) / static_cast<double>(std::max<std::int64_t>(made, 1));
        };
        const double mean = (solve.tabu ? tabuPart * each(INT64_MAX) : 0) + (1 - tabuPart) * each(0);
        total = std::floor(0.97 * std::max(options_.seconds - Passed(), 0.0) / mean) + 1;
    }
    const auto tabuTotal = static_cast<std::int64_t>(tabuPart * total);
    const auto all = static_cast<std::int64_t>(total);
    while (moves_ < all && !solve.annealing.Optimal()) {
        const std::int64_t made = solve.Step(std::min(kStep, all - moves_), tabuTotal, all - tabuTotal);
        const bool ended = made == 0 && solve.tabuMade >= tabuTotal;
        moves_ += made;
        const bool late = solve.annealing.Late() > 0;
        const double finish =
            late ? best_.finish : solve.flat.hours.MomentOf(solve.flat.origin + solve.Finish());
        if (Cancelled(watch, static_cast<double>(moves_) / total, finish)) {
            if (solve.tabu) solve.annealing.Try(solve.tabu->BestOrder());
            return false;
        }
        if (ended || (timed && Passed() > 1.2 * options_.seconds)) return true;
    }
    return true;
}

void ShortenSolve::SearchFlat(IterationWatch& watch) {
    Flattening flat(network_, inFamily_, project_);
    if (!flat.Make(limits_)) return SearchPasses(watch);
    FlatSolve solve(flat, options_.seed);
    FlatSearch& search = solve.annealing;
    bound_ = std::max(bound_, flat.hours.MomentOf(flat.origin + search.LowerBound()));
    if (!search.Optimal()) RunFlat(solve, watch);
    stopped_ = false;  // the pass that judges what was found
    std::vector<double> key(network_.Tasks().size());
    for (std::size_t i = 0; i < search.BestOrder().size(); ++i)
        key[Index(flat.taskOf[Index(search.BestOrder()[i])])] = static_cast<double>(i);
    Try(OrderBy(key));
    proven_ = search.Late() == 0 && search.Optimal();
}

}  // namespace vortan
