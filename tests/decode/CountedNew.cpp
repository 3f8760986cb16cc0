#include "CountedNew.h"

#include <cstdlib>
#include <new>

// In a file of their own: inlined into the tests, the compiler would take these for a mismatched new and
// free.

namespace {
std::size_t allocations = 0;
}

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace marisonde {

std::size_t AllocationCount() {
    return allocations;
}

}  // namespace marisonde
