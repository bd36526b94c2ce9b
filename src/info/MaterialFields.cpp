// The fields of materials and their textures.

#include "info/SceneFields.h"

namespace {

struct ParamNames {
    const char* number;
    const char* vector;
};

/// The values for the effect count from 1, as effects do.
constexpr ParamNames kParamNames[KRE_EffectParams::kParams] = {
    {"float1", "vector1"}, {"float2", "vector2"}, {"float3", "vector3"}, {"float4", "vector4"},
    {"float5", "vector5"}, {"float6", "vector6"}, {"float7", "vector7"}, {"float8", "vector8"},
};

void AddEffectFields(const KRE_EffectParams& effect, FieldList& fields)
{
    fields.Text("effect", effect.name.c_str());
    if (effect.name.IsEmpty())
        return; // its values are not stored
    for (size_t i = 0; i < KRE_EffectParams::kParams; ++i) {
        const KRE_EffectParam& param = effect.params[i];
        if (param.hasFloat)
            fields.Real(kParamNames[i].number, param.floatValue);
        if (param.hasVector)
            fields.Reals(kParamNames[i].vector, param.vectorValue, 3);
    }
}

template <class Key>
void AddTrackHead(const KRE_ArrayTrack<Key>& track, FieldList& fields)
{
    fields.Whole("keyCount", track.GetKeyCount());
    fields.Whole("interpolation", track.interpolation);
    fields.Whole("loop", track.loop);
    fields.Whole("secondFlag", track.secondFlag);
    fields.Real("loopEnd", track.loopEnd);
}

} // namespace

void AddMaterialFields(const KRE_MaterialInfo& material, FieldList& fields)
{
    fields.Color("diffuse", material.diffuse);
    fields.Color("ambient", material.ambient);
    fields.Color("specular", material.specular);
    fields.Color("emissive", material.emissive);
    fields.Real("power", material.power);
    fields.Whole("twoSided", material.twoSided);
    fields.Whole("transparent", material.transparent);
    fields.Whole("reflectionSet", material.reflectionSet);
    fields.Real("reflectionAmount", material.reflectionAmount);
    fields.Real("transparency", material.transparency);
    fields.Whole("mirrorU", material.mirrorU);
    fields.Whole("mirrorV", material.mirrorV);
    fields.Whole("tileU", material.tileU);
    fields.Whole("tileV", material.tileV);
    fields.Whole("addEmissive", material.addEmissive);
    fields.Whole("transparencyType", material.transparencyType);
    AddEffectFields(material.effectParams, fields);
}

void AddTrackFields(const KRE_ColorTrack& track, FieldList& fields)
{
    AddTrackHead(track, fields);
}

void AddTrackFields(const KRE_FloatTrack& track, FieldList& fields)
{
    AddTrackHead(track, fields);
}

void AddKeyFields(const KRE_ColorKey& key, FieldList& fields)
{
    fields.Real("time", key.time);
    fields.Color("value", key.value);
    fields.Color("inTangent", key.inTangent);
    fields.Color("outTangent", key.outTangent);
}

void AddKeyFields(const KRE_FloatKey& key, FieldList& fields)
{
    fields.Real("time", key.time);
    fields.Real("value", key.value);
    fields.Real("inTangent", key.inTangent);
    fields.Real("outTangent", key.outTangent);
}

void AddTextureFields(const KRE_Texture& texture, FieldList& fields)
{
    fields.Whole("textureWord", texture.textureWord);
    fields.Real("sequenceStart", texture.sequenceStart);
    fields.Real("framePeriod", texture.framePeriod);
    fields.Whole("sequenceMode", texture.sequenceMode);
    fields.Real("textureValue", texture.textureValue);
    fields.Whole("loadOptions", texture.loadOptions);
}

static const KRE_TextMatrixAni& StandingStill()
{
    static const KRE_TextMatrixAni still;
    return still;
}

void AddSlotFields(const KRE_Texture& texture, int32_t slot, FieldList& fields)
{
    const bool isAnimated = static_cast<bool>(texture.matrixAni);
    const KRE_TextMatrixAni& animation = isAnimated ? texture.matrixAni[slot] : StandingStill();
    fields.Text("file", texture.slotNames[slot].c_str());
    fields.Whole("type", texture.slots[slot].type);
    fields.Real("amount", texture.slots[slot].param);
    for (size_t i = 0; i < KRE_TextMatrixAni::kTrackCount; ++i)
        fields.Real(kSlotTracks[i], animation.constants[i]);
}

const KRE_FloatTrack& SlotTrack(const KRE_Texture& texture, int32_t slot, int32_t track)
{
    const bool isAnimated = static_cast<bool>(texture.matrixAni);
    return (isAnimated ? texture.matrixAni[slot] : StandingStill()).tracks[track];
}
