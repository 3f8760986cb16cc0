#pragma once

#include <cstddef>

namespace marisonde {

/// How often memory has been asked for since the start of the test program.
std::size_t AllocationCount();

}  // namespace marisonde
