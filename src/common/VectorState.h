#pragma once

namespace marisonde {

/// Marks the upper halves of the vector registers as unused. Libraries that calculate with wide vectors may
/// leave them in use, and processors then take twice as long for ordinary arithmetic (Intel 64 and IA-32
/// Architectures Optimization Reference Manual, on mixing AVX and SSE code). To be called before long
/// calculations: it costs some cycles and changes no value. Does nothing on processors that know no such
/// state.
void ClearUpperVectorState();

}  // namespace marisonde
