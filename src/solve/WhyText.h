#pragma once

#include <functional>
#include <string>

#include "solve/Why.h"

namespace vortan {

/// How names stand in the text, for a view that has links; as they are if not set.
struct WhyNames {
    std::function<std::string(const Vtask& task, const std::string& name)> task{};
    std::function<std::string(const std::string& name)> plain{};
};

/// The report as sentences, a line each; lines of a list begin with two blanks.
std::string WhyText(const Vtask& task, const WhyReport& report, const WhyNames& names = {});

/// A date with its time, without seconds that are none; "-" for no date.
std::string MomentText(DateTime moment);

}  // namespace vortan
