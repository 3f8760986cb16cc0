#include <array>
#include <cstdint>
#include <gtest/gtest.h>

#include "common/VectorState.h"

namespace marisonde {
namespace {

#if defined(__x86_64__) && defined(__GNUC__)

/// The upper half of a 256-bit register, whose bits are all set before `between`.
template <class Function>
__attribute__((target("avx"))) std::array<std::uint64_t, 2> UpperHalfAfter(const Function& between) {
    std::array<std::uint64_t, 2> upper{1, 1};
    asm volatile("vxorps %%ymm7, %%ymm7, %%ymm7\n\tvcmptrueps %%ymm7, %%ymm7, %%ymm7" ::: "xmm7");
    between();
    asm volatile("vextractf128 $1, %%ymm7, %0" : "=m"(upper));
    return upper;
}

TEST(VectorState, UpperHalvesAreUnusedAfterwards) {
    if (!__builtin_cpu_supports("avx")) GTEST_SKIP() << "this processor has no such state";
    EXPECT_EQ(UpperHalfAfter([] {}), (std::array{UINT64_MAX, UINT64_MAX}));
    EXPECT_EQ(UpperHalfAfter(ClearUpperVectorState), (std::array<std::uint64_t, 2>{}));
}

#endif

TEST(VectorState, NoValueChanges) {
    volatile double third = 1.0 / 3;
    const double kept = third;
    ClearUpperVectorState();
    EXPECT_EQ(kept, 1.0 / 3);
}

}  // namespace
}  // namespace marisonde
