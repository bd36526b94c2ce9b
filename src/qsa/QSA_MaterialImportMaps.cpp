#include <algorithm>
#include <cstring>

#include "base/Ascii.h"
#include "qsa/QSA_MaterialImport.h"

namespace {

constexpr size_t kMaxMapKeys = 1024;

constexpr const char* kMapTrackNames[kMapTracks] = {"OffsetV", "OffsetU", "TileV", "TileU",
                                                    "AngleW"};

/// A mirrored tile is two pictures wide: the tiling is doubled and the map is shifted by half a
/// tile.
void MirrorAxis(QSA_MapAnimation* animation, QSA_MapTrack tileTrack, QSA_MapTrack offsetTrack)
{
    float& tiling = animation->constants[tileTrack];
    tiling *= 2.0f;
    const float shift = 0.5f / tiling;
    animation->constants[offsetTrack] -= shift;
    for (KRE_FloatKey& key : animation->keys[tileTrack]) {
        key.value *= 2.0f;
        key.inTangent *= 2.0f;
        key.outTangent *= 2.0f;
    }
    for (KRE_FloatKey& key : animation->keys[offsetTrack])
        key.value -= shift;
}

/// The map's offset, rotation and scale about the centre of the picture.
D3DXMATRIX MapMatrix(const float (&constants)[kMapTracks])
{
    const D3DXVECTOR3 kAcross(0.0f, 0.0f, 1.0f);
    D3DXMATRIX matrix, turn, scale;
    D3DXMatrixTranslation(&matrix, -0.5f - constants[kMapOffsetU], -0.5f + constants[kMapOffsetV],
                          0.0f);
    D3DXMatrixRotationAxis(&turn, &kAcross, -constants[kMapAngleW]);
    D3DXMatrixScaling(&scale, constants[kMapTileU], constants[kMapTileV], 1.0f);
    D3DXMatrixMultiply(&matrix, &matrix, &turn);
    D3DXMatrixMultiply(&matrix, &matrix, &scale);
    matrix._31 = matrix._41 + 0.5f;
    matrix._32 = matrix._42 + 0.5f;
    matrix._33 = 1.0f;
    matrix._41 = matrix._42 = matrix._43 = 0.0f;
    matrix._44 = 1.0f;
    return matrix;
}

} // namespace

/// Starts at the keyword of a map. The tile flags belong to the material; later maps add to them.
/// QUIRK: a missing value ends the map, and with it the scene, just as the end of the file does;
/// all other blocks skip it. Kept so that such files still end where they always did.
int32_t QSA_MaterialImport::ParseMap(QSA_MapKind kind, QSA_Material* material)
{
    if (!material->maps[kind])
        material->maps[kind] = std::make_unique<QSA_Map>();
    QSA_Map& map = *material->maps[kind];
    float(&constants)[kMapTracks] = map.animation.constants;
    std::copy_n(QSA_MapAnimation().constants, size_t{kMapTracks}, constants);

    text.SkipTo('{');
    const int32_t result = text.ParseBlock(
        [&](QSA_Token token) { return ParseMapKeyword(token, &map, &material->render); });
    if (result != 0)
        return result;
    if (material->render.mirrorU)
        MirrorAxis(&map.animation, kMapTileU, kMapOffsetU);
    if (material->render.mirrorV)
        MirrorAxis(&map.animation, kMapTileV, kMapOffsetV);
    map.matrix = MapMatrix(constants);
    return 0;
}

int32_t QSA_MaterialImport::ParseMapKeyword(QSA_Token token, QSA_Map* map, KRE_MaterialInfo* render)
{
    float(&constants)[kMapTracks] = map->animation.constants;
    float unused = 0.0f;
    switch (token) {
    case QSA_Token::Bitmap: {
        TokenBuffer name;
        if (text.ReadQuoted(name) != 0)
            return 1;
        map->bitmap.Assign(name);
        return 0;
    }
    case QSA_Token::MapAmount:
        return text.ReadFloat(&map->amount);
    case QSA_Token::UVWUOffset:
        return text.ReadFloat(&constants[kMapOffsetU]);
    case QSA_Token::UVWVOffset:
        return text.ReadFloat(&constants[kMapOffsetV]);
    case QSA_Token::UVWUTiling:
        return text.ReadFloat(&constants[kMapTileU]);
    case QSA_Token::UVWVTiling:
        return text.ReadFloat(&constants[kMapTileV]);
    case QSA_Token::UVWWAngle:
        return text.ReadFloat(&constants[kMapAngleW]);
    case QSA_Token::UVWUAngle:
    case QSA_Token::UVWVAngle:
        return text.ReadFloat(&unused);
    case QSA_Token::UVWTileU:
        return ReadTiling(&render->tileU, &render->mirrorU);
    case QSA_Token::UVWTileV:
        return ReadTiling(&render->tileV, &render->mirrorV);
    case QSA_Token::TimeStartFrame:
        return text.ReadFloat(&map->startFrame);
    case QSA_Token::TimePlaybackRate:
        return text.ReadFloat(&map->playbackRate);
    case QSA_Token::TimeEndCondition:
        return ReadEndCondition(&map->endCondition);
    case QSA_Token::MapAnimation:
        text.SkipTo('{');
        return ParseMapAnimation(&map->animation);
    default:
        return 0;
    }
}

int32_t QSA_MaterialImport::ReadTiling(uint8_t* tileOut, uint8_t* mirrorOut)
{
    TokenBuffer word;
    if (text.ReadQuoted(word) != 0)
        return 1;
    if (CompareNoCase(word, "Tile") == 0)
        *tileOut = 1;
    else if (CompareNoCase(word, "Mirror") == 0)
        *mirrorOut = 1;
    return 0;
}

int32_t QSA_MaterialImport::ReadEndCondition(int32_t* conditionOut)
{
    static constexpr const char* kConditions[] = {"loop", "pingpong", "hold"}; // KRE_SequenceMode
    TokenBuffer word;
    if (text.ReadQuoted(word) != 0)
        return 1;
    for (int32_t i = 0; i < 3; ++i) {
        if (CompareNoCase(word, kConditions[i]) == 0) {
            *conditionOut = i;
            return 0;
        }
    }
    text.Warning("Unknown end condition for map time parameter");
    return 0;
}

int32_t QSA_MaterialImport::ParseMapAnimation(QSA_MapAnimation* animation)
{
    size_t selected = kMapTracks;
    return text.ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::MapAttribute: {
            TokenBuffer name = "";
            text.ReadQuoted(name);
            for (size_t i = 0; i < kMapTracks; ++i) {
                if (std::strcmp(name, kMapTrackNames[i]) == 0)
                    selected = i;
            }
            return 0;
        }
        case QSA_Token::ControlFloatBezier:
            if (selected == kMapTracks)
                return 0;
            text.SkipTo('{');
            return ParseMapKeys(&animation->keys[selected]);
        default:
            return 0;
        }
    });
}

int32_t QSA_MaterialImport::ParseMapKeys(std::vector<KRE_FloatKey>* keysOut)
{
    keysOut->clear();
    return text.ParseBlock([&](QSA_Token token) {
        if (token != QSA_Token::ControlBezierFloatKey)
            return 0;
        if (keysOut->size() == kMaxMapKeys)
            return 0; // the warning came with the last key that fits
        KRE_FloatKey& key = keysOut->emplace_back();
        for (float* value : {&key.time, &key.value, &key.inTangent, &key.outTangent})
            text.ReadFloat(value);
        if (keysOut->size() == kMaxMapKeys)
            text.Warning("More than 1024 float bezier keys");
        return 0;
    });
}
