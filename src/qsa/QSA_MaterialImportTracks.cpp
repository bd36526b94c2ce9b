#include <algorithm>

#include "base/Ascii.h"
#include "qsa/QSALoader.h"

namespace {

constexpr int32_t kMaxTrackKeys = 1024;

void Scale(D3DCOLORVALUE& tangent, float factor)
{
    tangent.r *= factor;
    tangent.g *= factor;
    tangent.b *= factor;
    tangent.a *= factor;
}

void Scale(float& tangent, float factor)
{
    tangent *= factor;
}

} // namespace

int32_t QSALoader::ParseMaterialAnimation(QSA_Material* material)
{
    KRE_MaterialInfo& render = material->render;
    KRE_ColorTrack* colours = nullptr;
    bool isOpacity = false;
    return ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::MaterialAttribute: {
            TokenBuffer name = "";
            ReadQuoted(name);
            colours = FindColourTrack(name, &render);
            isOpacity = CompareNoCase(name, "Opacity") == 0;
            return 0;
        }
        case QSA_Token::ControlColorBezier:
        case QSA_Token::ControlColorLinear:
            if (!colours)
                return 0;
            SkipTo('{');
            return ParseColourTrack(colours);
        case QSA_Token::ControlFloatBezier:
        case QSA_Token::ControlFloatLinear:
            if (!isOpacity)
                return 0;
            SkipTo('{');
            return ParseFloatTrack(&render.opacityTrack, true);
        default:
            return 0;
        }
    });
}

KRE_ColorTrack* QSALoader::FindColourTrack(const char* name, KRE_MaterialInfo* render)
{
    const struct {
        const char* name;
        KRE_ColorTrack* track;
    } tracks[] = {{"Ambient", &render->ambientTrack},
                  {"Diffuse", &render->diffuseTrack},
                  {"Specular", &render->specularTrack},
                  {"SelfIllumColor", &render->selfIllumTrack}};
    for (const auto& known : tracks) {
        if (CompareNoCase(name, known.name) == 0)
            return known.track;
    }
    return nullptr;
}

/// Counts one more key of a track. False, with a warning, for one that finds no room.
/// QUIRK: the count goes on behind the last key that fits, and the track is as long as the count;
/// what was not stored is empty.
bool QSALoader::CountTrackKey(int32_t* number)
{
    if (++*number < kMaxTrackKeys)
        return true;
    Warning("Not more than 1024 float bezier keys allowed");
    return false;
}

/// Puts `number` keys into the track, the first of them from `keys`, the others empty.
template <class Track, class Key>
static void FillTrack(Track& track, const std::vector<Key>& keys, int32_t number, bool isLinear)
{
    track.SetKeyCount(number);
    if (track.Keys())
        std::copy(keys.begin(), keys.end(), track.Keys());
    track.interpolation = isLinear ? Track::kLinear : Track::kBezier;
    track.secondFlag = 0;
}

int32_t QSALoader::ParseColourTrack(KRE_ColorTrack* track)
{
    std::vector<KRE_ColorKey> keys;
    int32_t number = 0;
    bool isLinear = false;
    const int32_t result = ParseBlock([&](QSA_Token token) {
        const bool isLinearKey = token == QSA_Token::ControlPoint3Key;
        if (!isLinearKey && token != QSA_Token::ControlBezierPoint3Key)
            return 0;
        if (!CountTrackKey(&number))
            return 0;
        KRE_ColorKey& key = keys.emplace_back();
        ReadFloat(&key.time);
        ReadColour(&key.value);
        if (isLinearKey) {
            isLinear = true; // one such key makes the whole track linear
            return 0;
        }
        ReadColour(&key.inTangent);
        ReadColour(&key.outTangent);
        key.inTangent.a = key.outTangent.a = 0.0f;
        return 0;
    });
    FillTrack(*track, keys, number, isLinear);
    return result;
}

/// `invert` turns an opacity into a transparency.
int32_t QSALoader::ParseFloatTrack(KRE_FloatTrack* track, bool invert)
{
    std::vector<KRE_FloatKey> keys;
    int32_t number = 0;
    bool isLinear = false;
    const int32_t result = ParseBlock([&](QSA_Token token) {
        const bool isLinearKey = token == QSA_Token::ControlFloatKey;
        if (!isLinearKey && token != QSA_Token::ControlBezierFloatKey)
            return 0;
        if (!CountTrackKey(&number))
            return 0;
        KRE_FloatKey& key = keys.emplace_back();
        ReadFloat(&key.time);
        ReadFloat(&key.value);
        if (isLinearKey) {
            isLinear = true;
        } else {
            const float sign = invert ? -1.0f : 1.0f;
            ReadFloat(&key.inTangent);
            ReadFloat(&key.outTangent);
            key.inTangent *= sign;
            key.outTangent *= sign;
        }
        if (invert)
            key.value = 1.0f - key.value;
        return 0;
    });
    FillTrack(*track, keys, number, isLinear);
    return result;
}

/// Scales the tangents of a track by the distance to the neighbours, still in ticks, and turns its
/// times to seconds.
template <class Key>
void QSALoader::FinishTrack(KRE_ArrayTrack<Key>& track)
{
    const int32_t number = track.GetKeyCount();
    for (int32_t i = 0; i < number; ++i) {
        if (i > 0)
            Scale(track.Key(i).inTangent, track.Key(i).time - track.Key(i - 1).time);
        if (i + 1 < number)
            Scale(track.Key(i).outTangent, track.Key(i + 1).time - track.Key(i).time);
    }
    for (int32_t i = 0; i < number; ++i)
        track.Key(i).time = time.TicksToSeconds(track.Key(i).time);
}

template void QSALoader::FinishTrack(KRE_ArrayTrack<KRE_ColorKey>& track);
template void QSALoader::FinishTrack(KRE_ArrayTrack<KRE_FloatKey>& track);
