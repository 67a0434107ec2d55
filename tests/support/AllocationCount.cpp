#include "support/AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {
std::size_t allocations = 0;
}

#ifndef __SANITIZE_ADDRESS__
void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
#endif

namespace vortan {

std::size_t AllocationCount() {
    return allocations;
}

}  // namespace vortan
