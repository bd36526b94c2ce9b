#include "scene/KRE_3dScene.h"

#include <cstring>

#include "base/Ascii.h"
#include "base/WithMemory.h"
#include "scene/PartitionOrder.h"

KRE_3dScene::KRE_3dScene()
{
    SetClassName("KRE_3dScene");
}

template <class List>
static void EvaluateAll(List& list, double time)
{
    for (KRE_3dObject* object : list)
        object->EvaluateInPass(time, 1, 0);
}

int32_t KRE_3dScene::Update(double time, int32_t updateObjects)
{
    const double scaledTime = timeScale * time;
    BeginPass();
    EvaluateAll(meshes, scaledTime);
    EvaluateAll(cameras, scaledTime);
    if (updateObjects)
        EvaluateAll(objects, scaledTime);
    EvaluateAll(lights, scaledTime);
    EvaluateInPass(scaledTime, 1, 0);
    return 1;
}

int32_t KRE_3dScene::SetCamera(int32_t index)
{
    if (index >= cameras.Count()) {
        Warning("Camera nr %i does not exist", index);
        return 0;
    }
    activeCamera = index;
    return 1;
}

int32_t KRE_3dScene::SetLoop(int32_t flag)
{
    for (KRE_Mesh* mesh : meshes)
        mesh->SetLoop(flag);
    for (KRE_3dObject* object : objects)
        object->SetLoop(flag);
    for (KRE_Camera* camera : cameras)
        camera->SetLoop(flag);
    for (KRE_Light* light : lights)
        light->SetLoop(flag);
    KRE_3dObject::SetLoop(flag);
    return 1;
}

int32_t KRE_3dScene::SetLoopEnd(float seconds)
{
    for (KRE_Mesh* mesh : meshes)
        mesh->SetLoopEnd(seconds);
    for (KRE_3dObject* object : objects)
        object->SetLoopEnd(seconds);
    for (KRE_Camera* camera : cameras)
        camera->SetLoopEnd(seconds);
    for (KRE_Light* light : lights)
        light->SetLoopEnd(seconds);
    KRE_3dObject::SetLoopEnd(seconds);
    return 1;
}

template <class List>
static KRE_3dObject* FindIn(List& list, const char* name, bool caseSensitive)
{
    for (KRE_3dObject* object : list) {
        const char* own = object->name.c_str();
        if ((caseSensitive ? std::strcmp(own, name) : CompareNoCase(own, name)) == 0)
            return object;
    }
    return nullptr;
}

KRE_3dObject* KRE_3dScene::FindObject(const char* searchName, int32_t caseSensitive)
{
    const char* text = searchName ? searchName : "";
    const bool isExact = caseSensitive == 1;
    KRE_3dObject* found = FindIn(meshes, text, isExact);
    if (!found)
        found = FindIn(objects, text, isExact);
    if (!found)
        found = FindIn(cameras, text, isExact);
    return found ? found : FindIn(lights, text, isExact);
}

KRE_Mesh* KRE_3dScene::GetMesh(int32_t i)
{
    return i >= 0 && i < meshes.Count() ? meshes.Get(i) : nullptr;
}

KRE_Mesh* KRE_3dScene::FindMesh(const char* searchName, int32_t prefix)
{
    const char* text = searchName ? searchName : "";
    const size_t length = std::strlen(text);
    for (KRE_Mesh* mesh : meshes) {
        const char* own = mesh->name.c_str();
        if ((prefix ? std::strncmp(own, text, length) : std::strcmp(own, text)) == 0)
            return mesh;
    }
    return nullptr;
}

KRE_Light* KRE_3dScene::AddLight(const KRE_Light& light)
{
    KRE_Light* added = nullptr;
    WithMemory([&] { added = lights.GetSlot(lights.Add(&light)); }, [] {});
    if (!added)
        Error("Not enough memory for the scene");
    return added;
}

void KRE_3dScene::TrimLists()
{
    const auto trim = [this] {
        meshes.SetSize(meshes.Count());
        cameras.SetSize(cameras.Count());
        objects.SetSize(objects.Count());
        lights.SetSize(lights.Count());
    };
    WithMemory(trim, [this] { Error("Not enough memory for the scene"); });
}

void KRE_3dScene::Reset()
{
    meshes.Clear();
    cameras.Clear();
    objects.Clear();
    lights.Clear();
    ResetKeys();
    KRE_ClipObject::Reset();
    activeCamera = -1;
    reservedIndex = -1;
    opaqueMeshCount = 0;
    fileTime = -1;
    timeScale = 1.0f;
    ambientColor = kBlack;
    backgroundColor = kBlack;
    overrideMaterial = KRE_MaterialInfo();
    backgroundTexture.CopyFrom(KRE_Texture());
    settings = KRE_SceneSettings();
}

int32_t KRE_3dScene::PartitionMeshes()
{
    const int32_t count = meshes.Count();
    if (count > 0)
        meshes.Get(0); // brings the order up to date
    opaqueMeshCount = PartitionOrder(meshes.order.Get(), count, [this](int32_t slot) {
        return meshes.GetSlot(slot)->HasTransparency() != 0;
    });
    return opaqueMeshCount;
}
