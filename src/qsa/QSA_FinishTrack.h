#pragma once

#include "qsa/QSA_TimeScale.h"
#include "scene/KRE_MaterialInfo.h"

/// Makes a track of what the text gave: scales its tangents by the distance to the neighbours, still
/// in ticks, and turns its times to seconds.
void FinishTrack(KRE_ColorTrack* track, const QSA_TimeScale& time);
void FinishTrack(KRE_FloatTrack* track, const QSA_TimeScale& time);
