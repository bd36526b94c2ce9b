#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "qsa/QSA_LoadOptions.h"
#include "qsa/QSA_Material.h"
#include "qsa/QSA_SceneText.h"
#include "qsa/QSA_TimeScale.h"
#include "scene/CopyBudget.h"

/// Reads the materials of a scene text with their maps and animations, and keeps them until the
/// meshes are built. Block parsers return 0 at the end of the block and 1 if the file ends inside
/// it.
class QSA_MaterialImport {
public:
    /// All three must outlive the import. Times are converted to seconds with the values that
    /// `timeScale` has when a list or a map is finished.
    QSA_MaterialImport(QSA_SceneText& sceneText, const QSA_TimeScale& timeScale,
                       const QSA_LoadOptions& loadOptions);

    /// Reads a list from after its opening brace and finishes its materials, even if the file ends
    /// inside it. An empty list gets a default material.
    int32_t ParseList();
    /// The top-level material at `index`, or null for -1. A missing one is null too, with a
    /// `Warning` that names the mesh. Owned by the import.
    QSA_Material* Find(int32_t index, const char* meshName);
    /// Loads the maps of a material and of all its submaterials, once, for a mesh. Frame lists are taken
    /// from `budget`: many materials may name the same one.
    void LoadTextures(QSA_Material* material, const KRE_Mesh& mesh, CopyBudget& budget);

private:
    // --- materials: QSA_MaterialImport.cpp
    int32_t ParseMaterials();
    QSA_Material* AddMaterial();
    int32_t ParseMaterial(QSA_Material* material);
    void OpenMaterial(QSA_Material* material, std::vector<QSA_Material*>* open);
    int32_t ParseMaterialKeyword(QSA_Token token, QSA_Material* material);
    void ReadName(QSA_Material* material);
    void ReadTransparencyType(KRE_MaterialInfo* render);
    void FinishMaterials();
    void FinishMaterial(QSA_Material* material);

    // --- maps: QSA_MaterialImportMaps.cpp
    int32_t ParseMap(QSA_MapKind kind, QSA_Material* material);
    int32_t ParseMapKeyword(QSA_Token token, QSA_Map* map, KRE_MaterialInfo* render);
    int32_t ReadTiling(uint8_t* tileOut, uint8_t* mirrorOut);
    int32_t ReadEndCondition(int32_t* conditionOut);
    int32_t ParseMapAnimation(QSA_MapAnimation* animation);
    int32_t ParseMapKeys(std::vector<KRE_FloatKey>* keysOut);

    // --- the pictures of maps: QSA_MaterialImportTextures.cpp
    void LoadOwnTextures(QSA_Material* material);
    bool LoadMapTexture(const QSA_Map& map, KRE_Texture* texture, const char* warning);
    void AttachMapAnimation(const QSA_Map& map, KRE_Texture* texture, int32_t slot);
    void SelectSlotOf(const QSA_Map& map, QSA_Material* material, int32_t slot);
    void LoadReflectionMap(QSA_Material* material, int32_t* slot);
    void LoadDiffuseMap(QSA_Material* material, int32_t* slot);
    void LoadBumpMap(QSA_Material* material, int32_t slot);

    // --- animation: QSA_MaterialImportTracks.cpp
    int32_t ParseAnimation(KRE_MaterialInfo* render);
    bool CountTrackKey(int32_t* number);
    template <class Key>
    int32_t ParseTrack(KRE_ArrayTrack<Key>* track);

    QSA_SceneText& text;                                  ///< not owned, the current file
    const QSA_TimeScale& time;                            ///< not owned, of the current file
    const QSA_LoadOptions& options;                       ///< not owned, of the current load
    std::vector<std::unique_ptr<QSA_Material>> materials; ///< owned; all of the file, in file order
    std::vector<QSA_Material*> topMaterials;              ///< not owned, live in `materials`
    size_t finishedMaterials = 0; ///< how many of `materials`, from the first on
};
