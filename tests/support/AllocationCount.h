#pragma once

#include <cstddef>

namespace vortan {

/// How often the test program has asked for memory. The sanitizers bring an allocator of their own; it is
/// always 0 then.
std::size_t AllocationCount();

}  // namespace vortan
