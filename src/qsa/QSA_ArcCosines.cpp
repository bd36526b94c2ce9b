#include "qsa/QSA_ArcCosines.h"

#include "platform/Simd.h"
#include "qsa/QSA_ArcCosine.h"

using namespace simd;

namespace {

struct TwoLanes {
    using Doubles = Doubles2;
    static Doubles Splat(double value) { return SplatDouble(value); }
};
using ArcCosine = QSA_ArcCosine<TwoLanes>;

} // namespace

void PlainArcCosines(float* values, size_t number)
{
    for (size_t i = 0; i < number; i += kArcCosineStep) {
        const Floats4 cosines = LoadFloats(values + i);
        StoreFloats(values + i,
                    ToFloats(ArcCosine::Of(FirstTwo(cosines)), ArcCosine::Of(LastTwo(cosines))));
    }
}

void ArcCosines(float* values, size_t number)
{
    static const ArcCosinesFunction four = FourArcCosines();
    if (four)
        four(values, number);
    else
        PlainArcCosines(values, number);
}
