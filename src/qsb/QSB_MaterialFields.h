#pragma once

#include "gfx/KRE_Texture.h"
#include "qsb/QSB_Archive.h"
#include "scene/KRE_MaterialInfo.h"

// What files store for materials, their tracks and their textures: one list for each record, in
// file order.

// ---- Tracks

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_ColorKey>& key)
{
    archive.Real("time", key.time);
    archive.Color("value", key.value);
    archive.Color("inTangent", key.inTangent);
    archive.Color("outTangent", key.outTangent);
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_FloatKey>& key)
{
    archive.Real("time", key.time);
    archive.Real("value", key.value);
    archive.Real("inTangent", key.inTangent);
    archive.Real("outTangent", key.outTangent);
}

template <class Archive, class Track>
void TrackFields(Archive& archive, Track& track, int32_t keyBytes)
{
    int32_t keyCount = track.GetKeyCount();
    archive.Whole("keyCount", keyCount);
    archive.Whole("interpolation", track.interpolation);
    archive.Whole("loop", track.loop);
    archive.Whole("secondFlag", track.secondFlag);
    archive.Real("loopEnd", track.loopEnd);
    archive.TrackKeys(track, keyCount, keyBytes);
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_ColorTrack>& track)
{
    TrackFields(archive, track, kQsbLeastColorKey);
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_FloatTrack>& track)
{
    TrackFields(archive, track, kQsbLeastFloatKey);
}

// ---- Materials

struct QSB_EffectParamNames {
    const char* number;
    const char* vector;
};
/// Effect parameters are numbered from 1, as in effects.
inline constexpr QSB_EffectParamNames kEffectParamNames[KRE_EffectParams::kParams] = {
    {"float1", "vector1"}, {"float2", "vector2"}, {"float3", "vector3"}, {"float4", "vector4"},
    {"float5", "vector5"}, {"float6", "vector6"}, {"float7", "vector7"}, {"float8", "vector8"},
};

/// Without a name no values are stored.
template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_EffectParams>& effect)
{
    if (!archive.Has(kQsbEffectNames))
        return;
    archive.Text("effect", effect.name);
    if (!archive.Has(kQsbEffectValues) || effect.name.IsEmpty())
        return;
    for (int32_t i = 0; i < KRE_EffectParams::kParams; ++i) {
        auto& param = effect.params[i];
        if (archive.IsGiven(param.hasFloat))
            archive.Real(kEffectParamNames[i].number, param.floatValue);
        if (archive.IsGiven(param.hasVector))
            archive.Reals(kEffectParamNames[i].vector, param.vectorValue);
    }
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_MaterialInfo>& material)
{
    archive.Color("diffuse", material.diffuse);
    archive.Color("ambient", material.ambient);
    archive.Color("specular", material.specular);
    archive.Color("emissive", material.emissive);
    archive.Real("power", material.power);
    archive.Whole("twoSided", material.twoSided);
    archive.Whole("transparent", material.transparent);
    archive.Whole("reflectionSet", material.reflectionSet);
    if (archive.Has(kQsbReflectionAmount))
        archive.Real("reflectionAmount", material.reflectionAmount);
    archive.Real("transparency", material.transparency);
    archive.Track("diffuseTrack", material.diffuseTrack);
    archive.Track("ambientTrack", material.ambientTrack);
    archive.Track("specularTrack", material.specularTrack);
    archive.Track("selfIllumTrack", material.selfIllumTrack);
    archive.Track("opacityTrack", material.opacityTrack);
    archive.Whole("mirrorU", material.mirrorU);
    archive.Whole("mirrorV", material.mirrorV);
    archive.Whole("tileU", material.tileU);
    archive.Whole("tileV", material.tileV);
    archive.Whole("addEmissive", material.addEmissive);
    archive.Whole("transparencyType", material.transparencyType);
    archive.Record(material.effectParams);
}

// ---- Textures

struct QSB_AnimationNames {
    const char* constant;
    const char* track;
};
/// In the order of `KRE_TextMatrixAni::Track`.
inline constexpr QSB_AnimationNames kAnimationNames[KRE_TextMatrixAni::kTrackCount] = {
    {"offsetU", "offsetUTrack"}, {"offsetV", "offsetVTrack"}, {"tileU", "tileUTrack"},
    {"tileV", "tileVTrack"},     {"angle", "angleTrack"},
};

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_TextMatrixAni>& animation)
{
    for (int32_t i = 0; i < KRE_TextMatrixAni::kTrackCount; ++i)
        archive.Track(kAnimationNames[i].track, animation.tracks[i]);
    for (int32_t i = 0; i < KRE_TextMatrixAni::kTrackCount; ++i)
        archive.Real(kAnimationNames[i].constant, animation.constants[i]);
}

/// A map slot; its animation comes before it.
template <class Archive>
void SlotFields(Archive& archive, Stored<Archive, String>& file,
                Stored<Archive, KRE_Texture::Slot>& slot)
{
    archive.Text("file", file);
    archive.Whole("type", slot.type);
    archive.Real("amount", slot.param);
}

/// The sequence of a texture and how it was loaded; the slots follow.
template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_Texture>& texture)
{
    archive.Whole("textureWord", texture.textureWord);
    archive.Real("sequenceStart", texture.sequenceStart);
    archive.Real("framePeriod", texture.framePeriod);
    archive.Whole("sequenceMode", texture.sequenceMode);
    archive.Real("textureValue", texture.textureValue);
    archive.Whole("loadOptions", texture.loadOptions);
}
