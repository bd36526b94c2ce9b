#include <algorithm>

#include "gfx/KRE_Gfx.h"
#include "qsa/QSA_FinishTrack.h"
#include "qsa/QSA_MaterialImport.h"
#include "qsa/QSA_NewObject.h"

/// Finds a map's file and loads it into the current slot. False, with a warning, if there is no
/// such file; `warning` has one %s for the name. The slot gets the name either way.
bool QSA_MaterialImport::LoadMapTexture(const QSA_Map& map, KRE_Texture* texture,
                                        const char* warning)
{
    String path;
    const bool isFound =
        gGfx->FindTextureFile(&path, map.bitmap.c_str(), options.directory.c_str());
    if (isFound) {
        gGfx->LoadTexture(texture, path.c_str(), 0, -1, -1, options.MipLevels());
        texture->loadOptions = options.flags & kLoadSingleMipLevel; // set only by a load
    } else {
        text.Warning(warning, map.bitmap.c_str());
    }
    texture->slotNames[texture->currentSlot] = map.bitmap;
    return isFound;
}

void QSA_MaterialImport::AttachMapAnimation(const QSA_Map& map, KRE_Texture* texture, int32_t slot)
{
    static constexpr KRE_TextMatrixAni::Track kTracks[kMapTracks] = {
        KRE_TextMatrixAni::kOffsetV, KRE_TextMatrixAni::kOffsetU, KRE_TextMatrixAni::kTileV,
        KRE_TextMatrixAni::kTileU, KRE_TextMatrixAni::kAngle};
    KRE_TextMatrixAni& target = texture->matrixAni[slot];
    for (size_t i = 0; i < kMapTracks; ++i) {
        const std::vector<KRE_FloatKey>& keys = map.animation.keys[i];
        KRE_FloatTrack& track = target.tracks[kTracks[i]];
        track.SetKeyCount(static_cast<int32_t>(keys.size()));
        if (!keys.empty())
            CheckMemory(track.Keys(), text);
        std::copy(keys.begin(), keys.end(), track.Keys());
        FinishTrack(&track, time);
        target.constants[kTracks[i]] = map.animation.constants[i];
    }
}

void QSA_MaterialImport::LoadTextures(QSA_Material* material, const KRE_Mesh& mesh,
                                      CopyBudget& budget)
{
    std::vector<QSA_Material*> waiting = {material};
    while (!waiting.empty()) {
        QSA_Material* current = waiting.back();
        waiting.pop_back();
        if (current->texturesLoaded)
            continue;
        current->texturesLoaded = true;
        LoadOwnTextures(current);
        if (current->texture && current->texture->sequenceCount > 0)
            budget.Take(AnimationBytes(*current->texture), mesh, text);
        // Pushed in reverse so that the first one is popped next: files load in their order.
        waiting.insert(waiting.end(), current->subMaterials.rbegin(), current->subMaterials.rend());
    }
}

void QSA_MaterialImport::LoadOwnTextures(QSA_Material* material)
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
    // The slot selected last has no picture; it must not hide the material's other pictures.
    if (!material->texture->IsValid() && slot > 0)
        material->texture->SelectStage(slot - 1);
}

/// Selects the slot of a map. A frame list takes up the whole texture, so a further map is an
/// error. The error can name neither the file nor the material; the warning here does.
void QSA_MaterialImport::SelectSlotOf(const QSA_Map& map, QSA_Material* material, int32_t slot)
{
    if (material->texture->sequenceCount > 0)
        text.Warning("Material '%s' has a frame list and another map: %s", material->name.c_str(),
                     map.bitmap.c_str());
    material->texture->SelectStage(slot);
}

void QSA_MaterialImport::LoadReflectionMap(QSA_Material* material, int32_t* slot)
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

void QSA_MaterialImport::LoadDiffuseMap(QSA_Material* material, int32_t* slot)
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
    // The colour that stood in for the picture must not tint it.
    render.diffuse.r = render.diffuse.g = render.diffuse.b = 1.0f;
    render.ambient.r = render.ambient.g = render.ambient.b = 1.0f;
    AttachMapAnimation(map, texture, *slot);
    ++*slot;
}

void QSA_MaterialImport::LoadBumpMap(QSA_Material* material, int32_t slot)
{
    const QSA_Map& map = *material->maps[kMapBump];
    KRE_Texture* texture = material->texture.get();
    SelectSlotOf(map, material, slot);
    // Set even without a picture: a file saved from here must not show it as a colour map.
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
