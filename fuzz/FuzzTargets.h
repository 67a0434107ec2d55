#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// One fuzz target: a function that must come back from any bytes. It shows a fault by an exception of
/// FuzzCheck, by a crash or by not ending.
///
/// A target is a file Fuzz<Name>.cpp with the function and one object of this type beside it, and a folder
/// corpus/<name> with at least one input. Nothing else has to know of it: the build makes a fuzzing program
/// of each such file, and the test program takes them all in and replays their corpora.
struct FuzzTarget {
    using Body = void (*)(const std::uint8_t* data, std::size_t size);

    FuzzTarget(std::string name, Body run) : Name(std::move(name)), Run(run) { All().push_back(this); }
    FuzzTarget(const FuzzTarget&) = delete;
    FuzzTarget& operator=(const FuzzTarget&) = delete;

    /// The targets that are linked into this program.
    static std::vector<const FuzzTarget*>& All() {
        static std::vector<const FuzzTarget*> all;
        return all;
    }

    const std::string Name;  ///< also that of its folder in corpus/
    const Body Run;
};

/// Raises a fault of the code under test unless `holds`.
inline void FuzzCheck(bool holds, const char* what) {
    if (!holds) throw std::logic_error(what);
}
