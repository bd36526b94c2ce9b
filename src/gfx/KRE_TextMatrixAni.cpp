#include "gfx/KRE_TextMatrixAni.h"

KRE_TextMatrixAni::KRE_TextMatrixAni()
{
    SetClassName("KRE_TextMatrixAni");
}

float KRE_TextMatrixAni::Evaluate(Track track, float time)
{
    return tracks[track].GetKeyCount() > 0 ? tracks[track].Evaluate(time) : constants[track];
}
