#include "gfx/KRE_TextMatrixAni.h"

#include <algorithm>

KRE_TextMatrixAni::KRE_TextMatrixAni()
{
    SetClassName("KRE_TextMatrixAni");
}

float KRE_TextMatrixAni::Evaluate(Track track, float time)
{
    return tracks[track].GetKeyCount() > 0 ? tracks[track].Evaluate(time) : constants[track];
}

KRE_TextMatrixAni* KRE_SlotAnimations::begin()
{
    if (!all)
        all = HeapArray<KRE_TextMatrixAni>(kSlots);
    return all.Get();
}

KRE_SlotAnimations& KRE_SlotAnimations::operator=(const KRE_SlotAnimations& other)
{
    if (this == &other)
        return *this;
    if (other.all)
        std::copy_n(other.all.Get(), kSlots, begin());
    else
        all.Free();
    return *this;
}
