// Materials and their tracks in QSB files.

#include <array>
#include <cstring>

#include "qsb/QSB_ReadContext.h"
#include "qsb/QSB_Record.h"
#include "scene/KRE_MaterialInfo.h"

// ---- Tracks

namespace {

// What stands ahead of the keys: count, interpolation, the two flags, end of the loop.
constexpr size_t kInterpolationAt = 4;
constexpr size_t kFlagsAt = 8;
constexpr size_t kLoopEndAt = 10;
using TrackHead = std::array<uint8_t, kQsbLeastTrack>;

template <class Key>
void SaveTrack(File& file, const KRE_ArrayTrack<Key>& track)
{
    const int32_t count = track.GetKeyCount();
    TrackHead head;
    std::memcpy(head.data(), &count, sizeof count);
    std::memcpy(&head[kInterpolationAt], &track.interpolation, sizeof track.interpolation);
    head[kFlagsAt] = track.loop;
    head[kFlagsAt + 1] = track.secondFlag;
    std::memcpy(&head[kLoopEndAt], &track.loopEnd, sizeof track.loopEnd);
    WriteRecord(file, head);
    const int64_t keyBytes = int64_t{count} * static_cast<int64_t>(sizeof(Key));
    if (keyBytes > INT32_MAX) {
        file.Error("Error writing to file"); // as of any file that would grow too large
        return;
    }
    file.Write(track.Keys(), static_cast<int32_t>(keyBytes));
}

template <class Key>
void LoadTrack(File& file, KRE_ArrayTrack<Key>& track)
{
    constexpr int32_t kKeyBytes = sizeof(Key);
    TrackHead head;
    ReadRecord(file, &head);
    int32_t count = 0;
    std::memcpy(&count, head.data(), sizeof count);
    std::memcpy(&track.interpolation, &head[kInterpolationAt], sizeof track.interpolation);
    track.loop = head[kFlagsAt];
    track.secondFlag = head[kFlagsAt + 1];
    std::memcpy(&track.loopEnd, &head[kLoopEndAt], sizeof track.loopEnd);
    gQsbReadContext.CheckCount(file, "track keys", count, kKeyBytes);
    track.SetKeyCount(count);
    if (count == 0)
        return;
    gQsbReadContext.CheckMemory(file, track.Keys());
    file.Read(track.Keys(), count * kKeyBytes);
}

} // namespace

void KRE_ColorTrack::Save(File& file) const
{
    SaveTrack(file, *this);
}

void KRE_ColorTrack::Load(File& file)
{
    LoadTrack(file, *this);
}

void KRE_FloatTrack::Save(File& file) const
{
    SaveTrack(file, *this);
}

void KRE_FloatTrack::Load(File& file)
{
    LoadTrack(file, *this);
}

// ---- Effects

void KRE_EffectParams::Save(File& file) const
{
    WriteText(file, name);
    if (name.IsEmpty())
        return;
    for (const KRE_EffectParam& param : params) {
        file.WriteInt8(static_cast<int8_t>(param.hasFloat));
        if (param.hasFloat)
            file.WriteFloat32(param.floatValue);
        file.WriteInt8(static_cast<int8_t>(param.hasVector));
        if (param.hasVector)
            WriteRecord(file, param.vectorValue);
    }
}

void KRE_EffectParams::Load(File& file)
{
    *this = KRE_EffectParams();
    if (gQsbReadContext.version < kQsbEffectNames)
        return;
    gQsbReadContext.ReadText(file, &name);
    if (gQsbReadContext.version < kQsbEffectValues || name.IsEmpty())
        return;
    for (KRE_EffectParam& param : params) {
        file.ReadInt8(&param.hasFloat);
        if (param.hasFloat)
            file.ReadFloat32(&param.floatValue);
        file.ReadInt8(&param.hasVector);
        if (param.hasVector)
            ReadRecord(file, &param.vectorValue);
    }
}

// ---- Materials

namespace {

struct StoredMaterial {
    D3DCOLORVALUE diffuse;
    D3DCOLORVALUE ambient;
    D3DCOLORVALUE specular;
    D3DCOLORVALUE emissive;
    float power;
    int32_t twoSided;
    int32_t transparent;
    int32_t reflectionSet;
};
static_assert(sizeof(StoredMaterial) == 80);

} // namespace

void KRE_MaterialInfo::Save(File& file) const
{
    const StoredMaterial stored = {diffuse, ambient,  specular,    emissive,
                                   power,   twoSided, transparent, reflectionSet};
    WriteRecord(file, stored);
    file.WriteFloat32(reflectionAmount);
    file.WriteFloat32(transparency);
    diffuseTrack.Save(file);
    ambientTrack.Save(file);
    specularTrack.Save(file);
    selfIllumTrack.Save(file);
    opacityTrack.Save(file);
    const uint8_t flags[] = {mirrorU, mirrorV, tileU, tileV, addEmissive};
    file.Write(flags, sizeof flags);
    file.WriteInt32(transparencyType);
    effectParams.Save(file);
}

void KRE_MaterialInfo::Load(File& file)
{
    *this = KRE_MaterialInfo();
    StoredMaterial stored;
    ReadRecord(file, &stored);
    diffuse = stored.diffuse;
    ambient = stored.ambient;
    specular = stored.specular;
    emissive = stored.emissive;
    power = stored.power;
    twoSided = stored.twoSided;
    transparent = stored.transparent;
    reflectionSet = stored.reflectionSet;
    if (gQsbReadContext.version >= kQsbReflectionAmount)
        file.ReadFloat32(&reflectionAmount);
    file.ReadFloat32(&transparency);
    diffuseTrack.Load(file);
    ambientTrack.Load(file);
    specularTrack.Load(file);
    selfIllumTrack.Load(file);
    opacityTrack.Load(file);
    for (uint8_t* flag : {&mirrorU, &mirrorV, &tileU, &tileV, &addEmissive})
        file.ReadInt8(flag);
    file.ReadInt32(&transparencyType);
    effectParams.Load(file);
}
