#pragma once

#include "qsa/QSA_TimeScale.h"
#include "scene/KRE_MaterialInfo.h"

/// Finishes a track read from a text: scales its tangents by the distance to the neighbouring keys,
/// still in ticks, and converts its times to seconds.
void FinishTrack(KRE_ColorTrack* track, const QSA_TimeScale& time);
void FinishTrack(KRE_FloatTrack* track, const QSA_TimeScale& time);
