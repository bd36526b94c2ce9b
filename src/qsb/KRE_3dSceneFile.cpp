// A whole scene in QSB files, except for the file's header.

#include "base/WithMemory.h"
#include "qsb/QSB_SceneFields.h"

template <class List>
static void SaveAll(File& file, const List& list)
{
    file.WriteInt32(list.Count());
    for (const auto* object : list)
        object->Save(file);
}

template <class T, int32_t N>
static void LoadAll(QSB_InputFile& file, const char* what, int32_t leastBytes, DynaMem<T, N>& list)
{
    const int32_t count = file.ReadCount(what, leastBytes);
    if (count > list.Capacity())
        list.SetSize(count);
    for (int32_t i = 0; i < count; ++i) {
        T* object = list.GetSlot(list.Add());
        file.CheckMemory(object);
        const QSB_ObjectInHand inHand(file, *object);
        WithMemory([&] { object->Load(file); }, [&] { file.CheckMemory(nullptr); });
    }
}

void KRE_3dScene::Save(File& file) const
{
    SaveFields(file, *this);
    const bool hasBackground = backgroundTexture.IsValid();
    file.WriteInt8(hasBackground ? 1 : 0);
    if (hasBackground)
        backgroundTexture.Save(file);
    settings.Save(file);
    SaveAll(file, meshes);
    SaveAll(file, cameras);
    SaveAll(file, objects);
    SaveAll(file, lights);
}

void KRE_3dScene::Load(QSB_InputFile& file)
{
    const QSB_ObjectInHand inHand(file, *this);
    Reset();
    LoadFields(file, *this);
    uint8_t hasBackground = 0;
    file.ReadInt8(&hasBackground);
    backgroundTexture.CopyFrom(KRE_Texture());
    if (hasBackground)
        backgroundTexture.Load(file);
    settings.Load(file);
    // Unused values may be anything: they are kept and saved.
    if (settings.useFog && (settings.fogMode < D3DFOG_NONE || settings.fogMode > D3DFOG_LINEAR))
        file.Fail("Invalid fogMode: %i", settings.fogMode);
    LoadAll(file, "meshes", kQsbLeastMesh, meshes);
    LoadAll(file, "cameras", kQsbLeastCamera, cameras);
    LoadAll(file, "objects", kQsbLeastObject, objects);
    LoadAll(file, "lights", kQsbLeastLight, lights);
    // QUIRK: an import links in the order of its text and sorts afterwards. Where several objects
    // have the name of a parent, a target or a bone, the first one found here is the first in a
    // different order.
    PartitionMeshes();
    LinkObjects(*this);
}
