#include <cstring>

#include "base/Ascii.h"
#include "gfx/KRE_Gfx.h"
#include "qsa/QSALoader.h"

namespace {

constexpr size_t kMaxMapKeys = 1024;

constexpr const char* kMapTrackNames[kMapTracks] = {"OffsetV", "OffsetU", "TileV", "TileU",
                                                    "AngleW"};

/// Mirrored tiles are two pictures wide: the map is drawn twice as dense and shifted by half of one.
void MirrorAxis(QSA_MapAnimation& animation, QSA_MapTrack tileTrack, QSA_MapTrack offsetTrack)
{
    float& tiling = animation.constants[tileTrack];
    tiling *= 2.0f;
    const float shift = 0.5f / tiling;
    animation.constants[offsetTrack] -= shift;
    for (KRE_FloatKey& key : animation.keys[tileTrack]) {
        key.value *= 2.0f;
        key.inTangent *= 2.0f;
        key.outTangent *= 2.0f;
    }
    for (KRE_FloatKey& key : animation.keys[offsetTrack])
        key.value -= shift;
}

/// The map's shift, turn and scale about the middle of the picture.
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

/// At the keyword of a map. The tile flags belong to the material: a later map adds to them.
/// QUIRK: a value that is not there ends the map, and with it the scene, as the end of the file does;
/// in all other blocks it is passed over. Files that are cut off by it have always been.
int32_t QSALoader::ParseMap(QSA_MapKind kind, QSA_Material* material)
{
    if (!material->maps[kind])
        material->maps[kind] = std::make_unique<QSA_Map>();
    QSA_Map& map = *material->maps[kind];
    float(&constants)[kMapTracks] = map.animation.constants;
    std::copy_n(QSA_MapAnimation().constants, size_t{kMapTracks}, constants);

    SkipTo('{');
    const int32_t result = ParseBlock(
        [&](QSA_Token token) { return ParseMapKeyword(token, &map, &material->render); });
    if (result != 0)
        return result;
    if (material->render.mirrorU)
        MirrorAxis(map.animation, kMapTileU, kMapOffsetU);
    if (material->render.mirrorV)
        MirrorAxis(map.animation, kMapTileV, kMapOffsetV);
    map.matrix = MapMatrix(constants);
    return 0;
}

int32_t QSALoader::ParseMapKeyword(QSA_Token token, QSA_Map* map, KRE_MaterialInfo* render)
{
    float(&constants)[kMapTracks] = map->animation.constants;
    float unused = 0.0f;
    switch (token) {
    case QSA_Token::Bitmap: {
        TokenBuffer name;
        if (ReadQuoted(name) != 0)
            return 1;
        map->bitmap.Assign(name);
        return 0;
    }
    case QSA_Token::MapAmount:
        return ReadFloat(&map->amount);
    case QSA_Token::UVWUOffset:
        return ReadFloat(&constants[kMapOffsetU]);
    case QSA_Token::UVWVOffset:
        return ReadFloat(&constants[kMapOffsetV]);
    case QSA_Token::UVWUTiling:
        return ReadFloat(&constants[kMapTileU]);
    case QSA_Token::UVWVTiling:
        return ReadFloat(&constants[kMapTileV]);
    case QSA_Token::UVWWAngle:
        return ReadFloat(&constants[kMapAngleW]);
    case QSA_Token::UVWUAngle:
    case QSA_Token::UVWVAngle:
        return ReadFloat(&unused);
    case QSA_Token::UVWTileU:
        return ReadTiling(&render->tileU, &render->mirrorU);
    case QSA_Token::UVWTileV:
        return ReadTiling(&render->tileV, &render->mirrorV);
    case QSA_Token::TimeStartFrame:
        return ReadFloat(&map->startFrame);
    case QSA_Token::TimePlaybackRate:
        return ReadFloat(&map->playbackRate);
    case QSA_Token::TimeEndCondition:
        return ReadEndCondition(&map->endCondition);
    case QSA_Token::MapAnimation:
        SkipTo('{');
        return ParseMapAnimation(&map->animation);
    default:
        return 0;
    }
}

int32_t QSALoader::ReadTiling(uint8_t* tile, uint8_t* mirror)
{
    TokenBuffer word;
    if (ReadQuoted(word) != 0)
        return 1;
    if (CompareNoCase(word, "Tile") == 0)
        *tile = 1;
    else if (CompareNoCase(word, "Mirror") == 0)
        *mirror = 1;
    return 0;
}

int32_t QSALoader::ReadEndCondition(int32_t* conditionOut)
{
    static constexpr const char* kConditions[] = {"loop", "pingpong", "hold"}; // KRE_SequenceMode
    TokenBuffer word;
    if (ReadQuoted(word) != 0)
        return 1;
    for (int32_t i = 0; i < 3; ++i) {
        if (CompareNoCase(word, kConditions[i]) == 0) {
            *conditionOut = i;
            return 0;
        }
    }
    Warning("Unknown end condition for map time parameter");
    return 0;
}

int32_t QSALoader::ParseMapAnimation(QSA_MapAnimation* animation)
{
    size_t selected = kMapTracks;
    return ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::MapAttribute: {
            TokenBuffer name = "";
            ReadQuoted(name);
            for (size_t i = 0; i < kMapTracks; ++i) {
                if (std::strcmp(name, kMapTrackNames[i]) == 0)
                    selected = i;
            }
            return 0;
        }
        case QSA_Token::ControlFloatBezier:
            if (selected == kMapTracks)
                return 0;
            SkipTo('{');
            return ParseMapKeys(&animation->keys[selected]);
        default:
            return 0;
        }
    });
}

int32_t QSALoader::ParseMapKeys(std::vector<KRE_FloatKey>* keysOut)
{
    keysOut->clear();
    return ParseBlock([&](QSA_Token token) {
        if (token != QSA_Token::ControlBezierFloatKey)
            return 0;
        if (keysOut->size() == kMaxMapKeys)
            return 0; // was told when the last one was read
        KRE_FloatKey& key = keysOut->emplace_back();
        for (float* value : {&key.time, &key.value, &key.inTangent, &key.outTangent})
            ReadFloat(value);
        if (keysOut->size() == kMaxMapKeys)
            Warning("More than 1024 float bezier keys");
        return 0;
    });
}

// ---- Loading the pictures

/// Looks for a map's file and loads it into the current slot. False, with a warning, if there is no
/// such file; `text` holds one %s for the name. The name stays in the slot either way.
bool QSALoader::LoadMapTexture(const QSA_Map& map, KRE_Texture* texture, const char* text)
{
    String path;
    const bool isFound =
        gGfx->FindTextureFile(&path, map.bitmap.c_str(), options.directory.c_str());
    if (isFound) {
        gGfx->LoadTexture(texture, path.c_str(), 0, -1, -1, options.MipLevels());
        texture->loadOptions =
            options.flags & kLoadSingleMipLevel; // only a load leaves its options
    } else {
        Warning(text, map.bitmap.c_str());
    }
    texture->slotNames[texture->currentSlot] = map.bitmap;
    return isFound;
}

void QSALoader::AttachMapAnimation(const QSA_Map& map, KRE_Texture* texture, int32_t slot)
{
    static constexpr KRE_TextMatrixAni::Track kTracks[kMapTracks] = {
        KRE_TextMatrixAni::kOffsetV, KRE_TextMatrixAni::kOffsetU, KRE_TextMatrixAni::kTileV,
        KRE_TextMatrixAni::kTileU, KRE_TextMatrixAni::kAngle};
    KRE_TextMatrixAni& target = texture->matrixAni[slot];
    for (size_t i = 0; i < kMapTracks; ++i) {
        const std::vector<KRE_FloatKey>& keys = map.animation.keys[i];
        KRE_FloatTrack& track = target.tracks[kTracks[i]];
        track.SetKeyCount(static_cast<int32_t>(keys.size()));
        std::copy(keys.begin(), keys.end(), track.Keys());
        FinishTrack(track);
        target.constants[kTracks[i]] = map.animation.constants[i];
    }
}

/// Loads the maps of a material and of all its submaterials, once.
void QSALoader::LoadMaterialTextures(QSA_Material* material)
{
    std::vector<QSA_Material*> waiting = {material};
    while (!waiting.empty()) {
        QSA_Material* current = waiting.back();
        waiting.pop_back();
        if (current->texturesLoaded)
            continue;
        current->texturesLoaded = true;
        LoadOwnTextures(current);
        // In reverse, so that the first one is taken next: files are loaded in their order.
        waiting.insert(waiting.end(), current->subMaterials.rbegin(), current->subMaterials.rend());
    }
}

void QSALoader::LoadOwnTextures(QSA_Material* material)
{
    KRE_MaterialInfo& render = material->render;
    if (!render.effectParams.name.IsEmpty())
        render.transparent = 1;
    const bool hasMaps = material->HasMap(kMapReflect) || material->HasMap(kMapDiffuse) ||
                         material->HasMap(kMapBump);
    if (!hasMaps || options.Has(kLoadNoTextures))
        return;
    material->texture = std::make_unique<KRE_Texture>();
    int32_t slot = 0;
    if (material->HasMap(kMapReflect))
        LoadReflectionMap(material, &slot);
    if (material->HasMap(kMapDiffuse))
        LoadDiffuseMap(material, &slot);
    if (material->HasMap(kMapBump))
        LoadBumpMap(material, slot);
    // A map without a picture was selected last; it must not hide those that the material has.
    if (!material->texture->IsValid() && slot > 0)
        material->texture->SelectStage(slot - 1);
}

/// Selects the slot of a map. A list of frames takes up all of a texture, so that a further map is an
/// error, which can name neither the file nor the material.
void QSALoader::SelectSlotOf(const QSA_Map& map, QSA_Material* material, int32_t slot)
{
    if (material->texture->sequenceCount > 0)
        Warning("Material '%s' has a frame list and another map: %s", material->name.c_str(),
                map.bitmap.c_str());
    material->texture->SelectStage(slot);
}

void QSALoader::LoadReflectionMap(QSA_Material* material, int32_t* slot)
{
    const QSA_Map& map = *material->maps[kMapReflect];
    KRE_Texture* texture = material->texture.get();
    texture->SelectStage(0);
    if (!LoadMapTexture(map, texture, "Can not open reflection map '%s'"))
        return;
    texture->SetStage(0, StageReflection, 1.0f);
    material->render.reflectionAmount = map.amount;
    material->render.reflectionSet = material->HasMap(kMapDiffuse) ? 1 : 0;
    AttachMapAnimation(map, texture, 0);
    *slot = 1;
}

void QSALoader::LoadDiffuseMap(QSA_Material* material, int32_t* slot)
{
    const QSA_Map& map = *material->maps[kMapDiffuse];
    KRE_Texture* texture = material->texture.get();
    KRE_MaterialInfo& render = material->render;
    SelectSlotOf(map, material, *slot);
    if (!LoadMapTexture(map, texture, "Can not open diffuse map '%s'"))
        return;
    texture->SetSequenceTiming(1.0f / (map.playbackRate * time.frameSpeed),
                               map.startFrame / time.frameSpeed, map.endCondition);
    if (render.transparent == 0)
        render.transparent = texture->HasAlpha() ? 1 : 0;
    texture->SetStage(*slot, StageDiffuse, 1.0f);
    // The picture is not to be tinted by the colour that stood for it.
    render.diffuse.r = render.diffuse.g = render.diffuse.b = 1.0f;
    render.ambient.r = render.ambient.g = render.ambient.b = 1.0f;
    AttachMapAnimation(map, texture, *slot);
    ++*slot;
}

void QSALoader::LoadBumpMap(QSA_Material* material, int32_t slot)
{
    const QSA_Map& map = *material->maps[kMapBump];
    KRE_Texture* texture = material->texture.get();
    SelectSlotOf(map, material, slot);
    // Also without a picture: a file that is saved from here must not show it as a colour map.
    texture->SetStage(slot, StageBump, texture->slots[slot].param);
    if (!options.Has(kLoadBumpMaps)) {
        texture->slotNames[slot] = map.bitmap;
        return;
    }
    if (!LoadMapTexture(map, texture, "Can not open bump map '%s'"))
        return;
    texture->SetStage(slot, StageBump, 1.0f);
    AttachMapAnimation(map, texture, slot);
}
