// Compiled for AVX2 on x86: see src/CMakeLists.txt. Nothing in here may run before the processor was asked,
// and no function of it may be one that other sources share.

#include "qsa/QSA_ArcCosines.h"

#ifdef __AVX2__

#include "platform/SimdAvx2.h"
#include "qsa/QSA_ArcCosine.h"

namespace {

struct FourLanes {
    using Doubles = simd_avx2::Doubles4;
    static Doubles Splat(double value) { return simd_avx2::SplatDouble4(value); }
};

void FourAtATime(float* values, size_t number)
{
    for (size_t i = 0; i < number; i += kArcCosineStep) {
        const simd_avx2::Doubles4 cosines = simd_avx2::LoadAsDoubles(values + i);
        simd_avx2::StoreAsFloats(values + i, QSA_ArcCosine<FourLanes>::Of(cosines));
    }
}

} // namespace

ArcCosinesFunction FourArcCosines()
{
    return __builtin_cpu_supports("avx2") ? FourAtATime : nullptr;
}

#else

ArcCosinesFunction FourArcCosines()
{
    return nullptr;
}

#endif
