#include "FuzzTargets.h"

/// What the fuzzing engine calls. Each fuzzing program has exactly one target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzTarget::All().front()->Run(data, size);
    return 0;
}
