#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace vortan {

/// Threads that work beside the one that owns this. Whatever happens there, they are told to stop and waited
/// for when it goes.
struct ThreadCrew {
    ~ThreadCrew() {
        stop = true;
        for (std::thread& thread : threads) thread.join();
    }
    std::atomic<bool>& stop;
    std::vector<std::thread> threads{};
};

}  // namespace vortan
