#include "solve/ShortenCrew.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>

#include "solve/ThreadCrew.h"

namespace vortan {
namespace {

/// Each takes the memory of a solve.
constexpr int kMostSearches = 8;
constexpr std::uint64_t kSeedStep = 0x9E3779B97F4A7C15;  // 2^64 over the golden ratio: far apart

}  // namespace

ShortenCrew::ShortenCrew(const Solver& solver, std::int32_t project, const ShortenOptions& options,
                         int workers) {
    const int count = options.moves > 0 ? 1 : std::clamp(workers, 1, kMostSearches);
    for (int i = 0; i < count; ++i) {
        ShortenOptions mine = options;
        mine.seed += static_cast<std::uint64_t>(i) * kSeedStep;
        searches_.push_back(std::make_unique<ShortenSolve>(solver, project, mine));
    }
}

void ShortenCrew::Run(Solver& solver, IterationWatch& watch) {
    std::atomic<bool> stop{false};
    std::mutex mutex;
    std::exception_ptr fault;
    watch.StopWith(&stop);
    {
        ThreadCrew crew{stop};  // its end is that of the search on this thread, whose time is that of all
        for (std::size_t i = 1; i < searches_.size(); ++i) {
            try {
                crew.threads.emplace_back([&, i] {
                    try {
                        IterationWatch mine(solver, stop);
                        searches_[i]->Run(mine);
                        if (searches_[i]->Result().optimal) stop = true;
                    } catch (...) {
                        const std::scoped_lock lock(mutex);
                        fault = std::current_exception();
                        stop = true;
                    }
                });
            } catch (const std::system_error&) {  // no more threads to be had
                break;
            }
        }
        searches_[0]->Run(watch);
    }
    watch.StopWith(nullptr);
    if (fault) std::rethrow_exception(fault);
}

const ShortenSolve& ShortenCrew::Best() const {
    const ShortenSolve* best = searches_.front().get();
    for (const auto& each : searches_)
        if (each->IsBetterThan(*best)) best = each.get();
    return *best;
}

ShortenResult ShortenCrew::Result() const {
    ShortenResult result = Best().Result();
    result.moves = 0;
    for (const auto& each : searches_) {
        result.moves += each->Result().moves;
        result.bound = std::max(result.bound, each->Result().bound);
    }
    // What one search has proven holds for the others.
    result.optimal |= result.finish <= result.bound;
    return result;
}

}  // namespace vortan
