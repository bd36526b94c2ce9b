#pragma once

#include <cstdint>

#include "base/DynaMem.h"
#include "scene/KRE_3dClipObject.h"
#include "scene/KRE_Camera.h"
#include "scene/KRE_Light.h"
#include "scene/KRE_Mesh.h"
#include "scene/KRE_SceneSettings.h"

/// The root of a loaded scene: it owns all its objects and is itself an object with bounds. Objects
/// point to each other only within one scene. Destroy a scene before the engine: its meshes and
/// textures hold device objects.
class KRE_3dScene : public KRE_3dClipObject {
public:
    static constexpr uint32_t kBlack = 0xFF000000;

    KRE_3dScene();

    /// The whole scene except its file's header. A load links the objects and orders the meshes;
    /// clones have no geometry after it.
    void Save(File& file) const override;
    void Load(QSB_InputFile& file) override;

    /// Evaluates meshes, cameras, objects, lights and the scene itself at `timeScale` * `time`
    /// seconds, in this order; returns 1. With `updateObjects` 0, only those objects that are
    /// parents or targets are evaluated.
    int32_t Update(double time, int32_t updateObjects);
    /// Makes the camera of this index the active one and returns 1, or warns and returns 0 if there
    /// are not that many. QUIRK: there is no lower bound; -1 means no camera of the scene.
    int32_t SetCamera(int32_t index);
    /// Set the flag, or the length in seconds, on all objects and the scene. Return 1.
    int32_t SetLoop(int32_t flag);
    int32_t SetLoopEnd(float seconds);

    /// The mesh at position `i` of the drawing order, or null.
    KRE_Mesh* GetMesh(int32_t i);
    /// The first mesh of this name or, if `prefix` is not 0, the first whose name begins with it;
    /// or null.
    KRE_Mesh* FindMesh(const char* searchName, int32_t prefix);
    /// The first of `meshes`, `objects`, `cameras`, `lights` with this name, or null.
    /// `caseSensitive` 1 compares exactly, any other value ignores ASCII case. A null name counts
    /// as empty.
    KRE_3dObject* FindObject(const char* searchName, int32_t caseSensitive);
    /// Resolves the stored names of parents, bones and camera targets to objects of `source`;
    /// returns 1. A name that is not found is a `Warning` and gives a null pointer. Lights get no
    /// target.
    /// QUIRK: a camera without a target name loses its parent, whatever its parent's name.
    int32_t LinkObjects(KRE_3dScene& source);

    /// Clears all pointers of the scene's objects to an object that is about to be destroyed.
    void ForgetObject(const KRE_3dObject* object);
    /// Orders the meshes so that those without a transparent material come first, and returns their
    /// number, also stored in `opaqueMeshCount`. The order within the two groups is not preserved.
    int32_t PartitionMeshes();
    /// Fills the scene's bounds from the boxes of `meshes` and the world positions of `objects`.
    /// Changes nothing if there are neither.
    void ComputeBounds();
    /// Computes the sphere around the meshes' boxes and the positions of `objects` and `cameras`,
    /// without changing the scene; returns the radius. QUIRK: with none of them the centre is the
    /// origin and the radius about 1.56e11.
    float GetSphere(D3DXVECTOR3& centerOut) const;

    /// Adds a copy of `light`, owned by the scene, and returns it.
    KRE_Light* AddLight(const KRE_Light& light);
    /// Removes spare slots from the lists. Slot numbers stored elsewhere become invalid.
    void TrimLists();
    /// Destroys all objects and resets the scene to its defaults.
    void Reset();

    int32_t activeCamera = -1;  ///< index into `cameras`; -1: none
    int32_t reservedIndex = -1; ///< no operation reads it
    int32_t opaqueMeshCount = 0;
    int32_t fileTime = -1; ///< of its source file: seconds since 1970, truncated to 32 bits
    float timeScale = 1.0f;
    uint32_t ambientColor = kBlack;    ///< 0xAARRGGBB
    uint32_t backgroundColor = kBlack; ///< 0xAARRGGBB
    KRE_MaterialInfo overrideMaterial; ///< combined with each mesh material if a draw asks for it
    KRE_Texture backgroundTexture;     ///< drawn in place of clearing when it holds a picture
    KRE_SceneSettings settings;
    DynaMem<KRE_Mesh, 64> meshes;
    DynaMem<KRE_Camera, 16> cameras;
    DynaMem<KRE_3dObject, 128> objects; ///< helpers and bones
    DynaMem<KRE_Light, 64> lights;
};
