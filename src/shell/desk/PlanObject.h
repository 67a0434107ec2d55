#pragma once

#include <variant>

namespace vortan {

class Vassignment;
class Vdependency;
class Vproject;
class Vresource;
class Vshift;
class Vtask;
class Vtemplate;

/// Any object of a plan that a screen can show by itself, or none.
using PlanObject = std::variant<std::monostate, Vproject*, Vtask*, Vdependency*, Vassignment*, Vtemplate*,
                                Vshift*, Vresource*>;

}  // namespace vortan
