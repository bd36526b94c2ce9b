#pragma once

// Four floats, four integers or two doubles at once. `simd` is the form for the target processor:
// SSE2 instructions if available, else plain C++ that the compiler may vectorise. Both round as
// IEEE requires and give the same bits, so that files and pictures are the same on every machine;
// approximate reciprocals do not and must not be used here. SimdPlain.h describes each operation.
//
// The CMake option QSA_PLAIN_SIMD builds everything with the plain form.

#if defined(__SSE2__) && !defined(QSA_PLAIN_SIMD)
#include "platform/SimdSse2.h"
namespace simd = simd_sse2;
#else
#include "platform/SimdPlain.h"
namespace simd = simd_plain;
#endif
