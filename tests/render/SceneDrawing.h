#pragma once

#include "scene/KRE_3dScene.h"
#include "tests/render/NotedMesh.h"
#include "tests/support/RaisedBy.h"
#include "tests/support/RecordingDirect3D.h"
#include "tests/support/SceneEngine.h"

#include <gmock/gmock.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

D3DXMATRIX Shift(float x, float y, float z);
D3DXMATRIX Scale(float x, float y, float z);

/// An engine over a device that only records its calls, and a scene for it. Its window is 64 x 64;
/// it looks from (0, 0, 0) along +Z, from 1 to 10000.
class SceneDrawing : public testing::Test {
protected:
    static constexpr DWORD kPlainFormat = D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1;
    static constexpr DWORD kBlendedFormat =
        D3DFVF_XYZB3 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL | D3DFVF_TEX1;

    SceneDrawing();
    ~SceneDrawing() override;

    /// Adds a mesh that is visible at `z`, with this many materials without pictures. Its bounds
    /// are not tested.
    KRE_Mesh& AddMesh(const char* name, int32_t materials = 1, float z = 10.0f,
                      DWORD fvf = kPlainFormat);
    /// Gives the mesh `count` vertices, all bytes 0, and sets its counts.
    static void MakeVertices(KRE_Mesh& mesh, int32_t count);
    static NotedMesh& DeviceMesh(const KRE_Mesh& mesh)
    {
        return *static_cast<NotedMesh*>(mesh.mesh.Get());
    }
    /// Adds an object of the scene to the mesh's bones; null for a bone that was not found. The
    /// first one represents the mesh itself.
    static void SetBones(KRE_Mesh& mesh, std::initializer_list<KRE_3dObject*> objects);
    KRE_3dObject& AddObject(const D3DXMATRIX& worldTM);
    /// Adds a light of the colour (red, 0, 0) that is switched on.
    KRE_Light& AddLight(float red = 1.0f);

    int32_t Draw(int32_t singleStage = 0, int32_t noMaterials = 0)
    {
        return gGfx->DrawScene(&scene, singleStage, noMaterials);
    }
    int32_t Draw(KRE_Mesh& mesh, const D3DXMATRIX* parentTM = nullptr)
    {
        return gGfx->DrawMesh(&mesh, parentTM, nullptr, 0, 0);
    }

    /// Returns and clears the recorded calls.
    std::vector<std::string> Calls();
    /// The same without the calls that bind a material's pictures and blending: stage states,
    /// textures, samplers, blending and alpha test states.
    std::vector<std::string> CallsButBinding();
    /// The recorded calls of one name; does not clear them.
    std::vector<std::string> CallsOf(const char* name) { return recorder->LinesOf(name); }
    /// Whether a recorded call contains these words; does not clear the calls.
    bool WasCalled(const std::string& words);
    /// The recorded meshes in the order in which they were drawn, "name 0" for a material. Clears
    /// the calls.
    std::vector<std::string> Drawn();
    /// Returns and clears the last warning, or empty.
    static std::string LastWarning();

    const ScratchDirectory scratch; // the log is written here
    ComHandle<RecordingDirect3D> d3d;
    std::shared_ptr<CallRecorder> recorder;
    std::unique_ptr<SceneEngine> engine;
    KRE_3dScene scene;
};
