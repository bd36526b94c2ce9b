#pragma once

#include <cstdint>

#include "base/DynaMem.h"
#include "scene/KRE_3dClipObject.h"
#include "scene/KRE_Camera.h"
#include "scene/KRE_Light.h"
#include "scene/KRE_Mesh.h"
#include "scene/KRE_SceneSettings.h"

/// The root of a loaded scene: owner of all its objects, and an object with bounds itself. Objects
/// point at each other only within one scene. A scene has to go before the engine: its meshes and
/// textures hold device objects.
class KRE_3dScene : public KRE_3dClipObject {
public:
    static constexpr uint32_t kBlack = 0xFF000000;

    KRE_3dScene();

    /// All of the scene but its file's header. A load links the objects and orders the meshes;
    /// clones have no geometry yet then.
    void Save(File& file) const override;
    void Load(QSB_InputFile& file) override;

    /// Evaluates meshes, cameras, objects, lights and the scene itself at `timeScale` * `time`
    /// seconds, in this order; returns 1. With `updateObjects` 0 only those objects that are
    /// parents or targets are reached.
    int32_t Update(double time, int32_t updateObjects);
    /// Makes the camera of this index the active one and returns 1, or warns and returns 0 if there
    /// are not that many. QUIRK: there is no lower bound; -1 stands for no camera of the scene.
    int32_t SetCamera(int32_t index);
    /// Set the flag, or the length in seconds, on all objects and the scene; return 1.
    int32_t SetLoop(int32_t flag);
    int32_t SetLoopEnd(float seconds);

    /// The mesh at a place of the drawing order, or null.
    KRE_Mesh* GetMesh(int32_t i);
    /// The first mesh of this name, or, with `prefix` not 0, whose name begins with it; or null.
    KRE_Mesh* FindMesh(const char* searchName, int32_t prefix);
    /// The first of `meshes`, `objects`, `cameras`, `lights` with this name, or null.
    /// `caseSensitive` 1 compares exactly, any other value ignores ASCII case. A null name is an
    /// empty one.
    KRE_3dObject* FindObject(const char* searchName, int32_t caseSensitive);
    /// Turns the stored names of parents, bones and camera targets into pointers to objects of
    /// `source`; returns 1. A name that is not found is a `Warning` and leaves null. Lights get no
    /// target.
    /// QUIRK: a camera without a target name loses its parent, whatever its parent's name.
    int32_t LinkObjects(KRE_3dScene& source);

    /// Clears all pointers of the scene's objects to one that is about to go.
    void ForgetObject(const KRE_3dObject* object);
    /// Orders the meshes so that those without a transparent material come first, and gives their
    /// number, also in `opaqueMeshCount`. The order within the two groups is not kept.
    int32_t PartitionMeshes();
    /// Fills the scene's bounds from the boxes of `meshes` and the world positions of `objects`.
    /// Without any of both nothing changes.
    void ComputeBounds();
    /// The sphere around the meshes' boxes and the positions of `objects` and `cameras`; gives the
    /// radius and leaves the scene as it is. QUIRK: with none of them the centre is the origin, the
    /// radius some 1.56e11.
    float GetSphere(D3DXVECTOR3& centerOut) const;

    /// Adds a copy of `light`, owned by the scene, and gives it.
    KRE_Light* AddLight(const KRE_Light& light);
    /// Leaves no spare slots in the lists. Slot numbers kept elsewhere are void then.
    void TrimLists();
    /// Destroys all objects and puts the scene back to its defaults.
    void Reset();

    int32_t activeCamera = -1;  ///< index into `cameras`; -1: none
    int32_t reservedIndex = -1; ///< no operation reads it
    int32_t opaqueMeshCount = 0;
    int32_t fileTime = -1; ///< of the file it came from: seconds since 1970, cut to 32 bits
    float timeScale = 1.0f;
    uint32_t ambientColor = kBlack;    ///< 0xAARRGGBB
    uint32_t backgroundColor = kBlack; ///< 0xAARRGGBB
    KRE_MaterialInfo overrideMaterial; ///< combined with each mesh material where a draw asks
    KRE_Texture backgroundTexture;     ///< drawn in place of clearing when it holds a picture
    KRE_SceneSettings settings;
    DynaMem<KRE_Mesh, 64> meshes;
    DynaMem<KRE_Camera, 16> cameras;
    DynaMem<KRE_3dObject, 128> objects; ///< helpers and bones
    DynaMem<KRE_Light, 64> lights;
};
