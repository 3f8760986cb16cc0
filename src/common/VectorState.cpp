#include "common/VectorState.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

namespace marisonde {

namespace {

__attribute__((target("avx"))) void ZeroUpper() {
    _mm256_zeroupper();
}

}  // namespace

void ClearUpperVectorState() {
    if (__builtin_cpu_supports("avx")) ZeroUpper();
}

}  // namespace marisonde

#else

namespace marisonde {

void ClearUpperVectorState() {}

}  // namespace marisonde

#endif
