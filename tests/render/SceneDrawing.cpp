#include "tests/render/SceneDrawing.h"

#include "base/ResetLogForTests.h"

#include <utility>

D3DXMATRIX Shift(float x, float y, float z)
{
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
}

D3DXMATRIX Scale(float x, float y, float z)
{
    return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1};
}

SceneDrawing::SceneDrawing()
    : d3d(RecordingDirect3D::Standalone()),
      recorder(d3d->Recorder()),
      engine(std::make_unique<SceneEngine>(2, d3d.get()))
{
    ResetLogForTests();
    gKreErrorRecord = {};
    gGfx->SetLookAt({0, 0, 0}, {0, 0, 1}, {0, 1, 0});
    gGfx->caps.MaxVertexBlendMatrixIndex = 32;
    recorder->ClearLines();
}

SceneDrawing::~SceneDrawing()
{
    scene.Reset(); // its meshes must be destroyed before the engine
    engine.reset();
}

KRE_Mesh& SceneDrawing::AddMesh(const char* name, int32_t materials, float z, DWORD fvf)
{
    KRE_Mesh& mesh = *scene.meshes.GetSlot(scene.meshes.Add());
    mesh.name = name;
    mesh.SetVertexFormat(fvf);
    mesh.SetVertexBlendFlags();
    mesh.processing = 1;
    mesh.AllocateMaterials(materials);
    mesh.worldTM = Shift(0, 0, z);
    mesh.mesh = ComPointer<ID3DXMesh>::Adopt(new NotedMesh(recorder, name));
    return mesh;
}

void SceneDrawing::MakeVertices(KRE_Mesh& mesh, int32_t count)
{
    NotedMesh& device = DeviceMesh(mesh);
    mesh.vertexCount = count;
    mesh.faceCount = 4;
    device.vertices.assign(static_cast<size_t>(mesh.stride * count), 0);
    device.vertexCount = static_cast<DWORD>(count);
    device.faceCount = 4;
    gGfx->device->CreateVertexBuffer(16, 0, 0, D3DPOOL_MANAGED, device.vertexBuffer.Out(), nullptr);
    gGfx->device->CreateIndexBuffer(16, 0, D3DFMT_INDEX16, D3DPOOL_MANAGED,
                                    device.indexBuffer.Out(), nullptr);
}

void SceneDrawing::SetBones(KRE_Mesh& mesh, std::initializer_list<KRE_3dObject*> objects)
{
    for (size_t i = 0; i < objects.size(); ++i) {
        const KRE_BoneInfo bone("bone");
        mesh.bones.Add(&bone);
    }
    mesh.AllocateBoneObjects();
    int32_t i = 0;
    for (KRE_3dObject* object : objects)
        mesh.boneObjects[i++] = object;
}

KRE_3dObject& SceneDrawing::AddObject(const D3DXMATRIX& worldTM)
{
    KRE_3dObject& object = *scene.objects.GetSlot(scene.objects.Add());
    object.worldTM = worldTM;
    return object;
}

KRE_Light& SceneDrawing::AddLight(float red)
{
    KRE_Light& light = *scene.lights.GetSlot(scene.lights.Add());
    light.light.Type = D3DLIGHT_DIRECTIONAL;
    light.light.Diffuse.r = red;
    return light;
}

std::vector<std::string> SceneDrawing::Calls()
{
    std::vector<std::string> calls = recorder->Lines();
    recorder->ClearLines();
    return calls;
}

std::vector<std::string> SceneDrawing::CallsButBinding()
{
    static constexpr const char* kBinding[] = {"SetTextureStageState ",
                                               "SetTexture ",
                                               "SetSamplerState ",
                                               "SetRenderState D3DRS_ALPHA",
                                               "SetRenderState D3DRS_SRCBLEND ",
                                               "SetRenderState D3DRS_DESTBLEND ",
                                               "SetRenderState D3DRS_TEXTUREFACTOR "};
    std::vector<std::string> calls = Calls();
    std::erase_if(calls, [](const std::string& line) {
        return std::any_of(std::begin(kBinding), std::end(kBinding),
                           [&](const char* start) { return line.starts_with(start); });
    });
    return calls;
}

bool SceneDrawing::WasCalled(const std::string& words)
{
    for (const std::string& line : recorder->Lines()) {
        if (line.find(words) != std::string::npos)
            return true;
    }
    return false;
}

std::vector<std::string> SceneDrawing::Drawn()
{
    static constexpr std::string_view kCall = "Mesh::DrawSubset ";
    std::vector<std::string> drawn;
    for (const std::string& line : Calls()) {
        if (line.starts_with(kCall))
            drawn.push_back(line.substr(kCall.size()));
    }
    return drawn;
}

std::string SceneDrawing::LastWarning()
{
    const KRE_Error record = std::exchange(gKreErrorRecord, KRE_Error());
    return record.message;
}
