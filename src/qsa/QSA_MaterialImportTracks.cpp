#include <algorithm>

#include "base/Ascii.h"
#include "qsa/QSA_MaterialImport.h"
#include "qsa/QSA_NewObject.h"

namespace {

constexpr int32_t kMaxTrackKeys = 1024;

KRE_ColorTrack* FindColorTrack(const char* name, KRE_MaterialInfo* render)
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

// How the two kinds of tracks differ: in their keywords, and in how the value of a key is read.

template <class Key>
constexpr QSA_Token kLinearKey = QSA_Token::ControlPoint3Key;
template <class Key>
constexpr QSA_Token kBezierKey = QSA_Token::ControlBezierPoint3Key;
template <>
constexpr QSA_Token kLinearKey<KRE_FloatKey> = QSA_Token::ControlFloatKey;
template <>
constexpr QSA_Token kBezierKey<KRE_FloatKey> = QSA_Token::ControlBezierFloatKey;

void ReadKeyValue(QSA_SceneText& text, D3DCOLORVALUE* valueOut)
{
    text.ReadColor(valueOut);
}

void ReadKeyTangent(QSA_SceneText& text, D3DCOLORVALUE* tangentOut)
{
    text.ReadColor(tangentOut);
    tangentOut->a = 0.0f;
}

/// The text has opacities, the track stores transparencies.
void ReadKeyValue(QSA_SceneText& text, float* valueOut)
{
    text.ReadFloat(valueOut);
    *valueOut = 1.0f - *valueOut;
}

void ReadKeyTangent(QSA_SceneText& text, float* tangentOut)
{
    text.ReadFloat(tangentOut);
    *tangentOut *= -1.0f;
}

} // namespace

int32_t QSA_MaterialImport::ParseAnimation(KRE_MaterialInfo* render)
{
    KRE_ColorTrack* colors = nullptr;
    bool isOpacity = false;
    return text.ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::MaterialAttribute: {
            TokenBuffer name = "";
            text.ReadQuoted(name);
            colors = FindColorTrack(name, render);
            isOpacity = CompareNoCase(name, "Opacity") == 0;
            return 0;
        }
        case QSA_Token::ControlColorBezier:
        case QSA_Token::ControlColorLinear:
            if (!colors)
                return 0;
            text.SkipTo('{');
            return ParseTrack(colors);
        case QSA_Token::ControlFloatBezier:
        case QSA_Token::ControlFloatLinear:
            if (!isOpacity)
                return 0;
            text.SkipTo('{');
            return ParseTrack(&render->opacityTrack);
        default:
            return 0;
        }
    });
}

/// Counts another key of a track. False, with a warning, for a key that does not fit.
/// QUIRK: keys that do not fit are counted too, and the track is as long as the count; the keys
/// that were not stored are empty.
bool QSA_MaterialImport::CountTrackKey(int32_t* number)
{
    if (++*number < kMaxTrackKeys)
        return true;
    text.Warning("Not more than 1024 float bezier keys allowed");
    return false;
}

template <class Key>
int32_t QSA_MaterialImport::ParseTrack(KRE_ArrayTrack<Key>* track)
{
    std::vector<Key> keys;
    int32_t number = 0;
    bool isLinear = false; // one linear key makes the whole track linear
    const int32_t result = text.ParseBlock([&](QSA_Token token) {
        const bool isLinearKey = token == kLinearKey<Key>;
        if (!isLinearKey && token != kBezierKey<Key>)
            return 0;
        if (!CountTrackKey(&number))
            return 0;
        Key& key = keys.emplace_back();
        text.ReadFloat(&key.time);
        ReadKeyValue(text, &key.value);
        if (isLinearKey) {
            isLinear = true;
            return 0;
        }
        ReadKeyTangent(text, &key.inTangent);
        ReadKeyTangent(text, &key.outTangent);
        return 0;
    });
    track->SetKeyCount(number); // keys missing from the text stay empty
    if (number > 0)
        std::copy(keys.begin(), keys.end(), CheckMemory(track->Keys(), text));
    track->interpolation = isLinear ? KRE_ArrayTrack<Key>::kLinear : KRE_ArrayTrack<Key>::kBezier;
    track->secondFlag = 0;
    return result;
}
