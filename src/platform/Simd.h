#pragma once

// Four floats, four integers or two doubles at once. `simd` is the form for the processor that is
// built for: SSE2 instructions where there are any, else plain C++ that the compiler may put into
// the instructions it has. Both round as IEEE says and give the same bits, so that files and pictures
// are the same on every machine; the fast approximations of reciprocals are not, and have no place
// here. SimdPlain.h describes each operation.
//
// The CMake option QSA_PLAIN_SIMD builds everything with the plain form.

#if defined(__SSE2__) && !defined(QSA_PLAIN_SIMD)
#include "platform/SimdSse2.h"
namespace simd = simd_sse2;
#else
#include "platform/SimdPlain.h"
namespace simd = simd_plain;
#endif
