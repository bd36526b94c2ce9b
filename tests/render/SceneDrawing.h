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

/// An engine over a device that does nothing but note its calls, and a scene for it. Its window is
/// of 64 x 64; it looks from (0, 0, 0) along +Z, from 1 to 10000.
class SceneDrawing : public testing::Test {
protected:
    static constexpr DWORD kPlainFormat = D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1;
    static constexpr DWORD kBlendedFormat =
        D3DFVF_XYZB3 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL | D3DFVF_TEX1;

    SceneDrawing();
    ~SceneDrawing() override;

    /// Adds a mesh that the view shows at `z`, with so many materials without pictures. Its bounds
    /// are not looked at.
    KRE_Mesh& AddMesh(const char* name, int32_t materials = 1, float z = 10.0f,
                      DWORD fvf = kPlainFormat);
    /// Gives the mesh room for so many vertices, all bytes 0, and sets its counts.
    static void MakeVertices(KRE_Mesh& mesh, int32_t count);
    static NotedMesh& DeviceMesh(const KRE_Mesh& mesh)
    {
        return *static_cast<NotedMesh*>(mesh.mesh.Get());
    }
    /// Adds an object of the scene to the mesh's bones; null for a bone that was not found. The
    /// first one stands for the mesh itself.
    static void SetBones(KRE_Mesh& mesh, std::initializer_list<KRE_3dObject*> objects);
    KRE_3dObject& AddObject(const D3DXMATRIX& worldTM);
    /// Adds a switched light of the colour (red, 0, 0).
    KRE_Light& AddLight(float red = 1.0f);

    int32_t Draw(int32_t singleStage = 0, int32_t noMaterials = 0)
    {
        return gGfx->DrawScene(&scene, singleStage, noMaterials);
    }
    int32_t Draw(KRE_Mesh& mesh, const D3DXMATRIX* parentTM = nullptr)
    {
        return gGfx->DrawMesh(&mesh, parentTM, nullptr, 0, 0);
    }

    /// The calls since the last look.
    std::vector<std::string> Calls();
    /// The same without what binds a material's pictures and blending: stage states, textures,
    /// samplers, the states of blending and alpha test.
    std::vector<std::string> CallsButBinding();
    /// The calls of one name since the last look, which this is not.
    std::vector<std::string> CallsOf(const char* name) { return recorder->LinesOf(name); }
    /// Whether a call with these words is among those since the last look, which this is not.
    bool WasCalled(const std::string& words);
    /// The meshes in the order in which they were drawn since the last look, "name 0" for a material.
    std::vector<std::string> Drawn();
    /// The last warning since the last look, or empty.
    static std::string LastWarning();

    const ScratchDirectory scratch; // the log is written here
    ComHandle<RecordingDirect3D> d3d;
    std::shared_ptr<CallRecorder> recorder;
    std::unique_ptr<SceneEngine> engine;
    KRE_3dScene scene;
};
