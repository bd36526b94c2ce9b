// Textures of materials in QSB files.

#include <algorithm>
#include <iterator>
#include <utility>

#include "gfx/KRE_Gfx.h"
#include "qsb/QSB_MaterialFields.h"
#include "scene/KRE_3dObject.h"

namespace {

constexpr int32_t kOldSlots = 8; // those past the fourth are dropped
constexpr int32_t kDrawnSlots = 2;

struct StoredSlot {
    KRE_TextMatrixAni matrixAni;
    String file;
    KRE_Texture::Slot slot;
};

void LoadStoredSlot(QSB_InputFile& file, StoredSlot* slotOut)
{
    slotOut->matrixAni.Load(file);
    QSB_LoadArchive archive(file);
    SlotFields(archive, slotOut->file, slotOut->slot);
}

/// The animation of a slot that is not animated. Scenes hold very many of them.
const QSB_RecordBytes& StillAnimation()
{
    static const QSB_RecordBytes record = [] {
        QSB_RecordBytes made;
        Fields(made, KRE_TextMatrixAni());
        return made;
    }();
    return record;
}

/// A frame list takes up the whole texture, so loading a further map is an error. That error can
/// name neither the file nor the material; this warning does.
void TellOfMapBesideList(KRE_Texture& texture, const QSB_InputFile& file, const String& map)
{
    const String path = file.GetFileName();
    const int32_t material = file.material;
    if (material < 0 || !file.object)
        texture.Warning("File '%s': Background has a frame list and another map: %s", path.c_str(),
                        map.c_str());
    else
        texture.Warning("File '%s': Material %i of '%s' has a frame list and another map: %s",
                        path.c_str(), material, file.object->name.c_str(), map.c_str());
}

} // namespace

void KRE_TextMatrixAni::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_TextMatrixAni::Load(QSB_InputFile& file)
{
    LoadFields(file, *this);
}

/// A texture that names no picture, as most do in scenes of one colour for each material.
static bool IsBare(const KRE_Texture& texture)
{
    return !texture.matrixAni &&
           std::all_of(std::begin(texture.slotNames), std::end(texture.slotNames),
                       [](const String& name) { return name.IsEmpty(); });
}

void KRE_Texture::Save(File& file) const
{
    if (IsBare(*this)) {
        QSB_RecordBytes record;
        Fields(record, *this);
        for (int32_t slot = 0; slot < kSlots; ++slot) {
            StillAnimation().AddTo(record);
            SlotFields(record, slotNames[slot], slots[slot]);
        }
        record.WriteTo(file);
        return;
    }
    QSB_SaveArchive archive(file);
    Fields(archive, *this);
    const QSB_RecordBytes& still = StillAnimation();
    for (int32_t slot = 0; slot < kSlots; ++slot) {
        if (matrixAni)
            matrixAni[slot].Save(file);
        else
            still.WriteTo(file);
        SlotFields(archive, slotNames[slot], slots[slot]);
    }
}

void KRE_Texture::Load(QSB_InputFile& file)
{
    LoadFields(file, *this);
    for (int32_t slot = 0; slot < kSlots; ++slot)
        LoadSlot(file, slot);
    if (file.version < kQsbFourSlots) {
        StoredSlot dropped;
        for (int32_t slot = kSlots; slot < kOldSlots; ++slot)
            LoadStoredSlot(file, &dropped);
    }
    SwapReflectionToFront();
    for (int32_t slot = 0; slot < kSlots; ++slot)
        LoadPicture(file, slot);
}

void KRE_Texture::LoadSlot(QSB_InputFile& file, int32_t slot)
{
    StoredSlot stored;
    LoadStoredSlot(file, &stored);
    matrixAni[slot] = stored.matrixAni;
    slotNames[slot] = stored.file;
    slots[slot] = stored.slot;
    // Only the first two slots are ever drawn, and only with a picture.
    const int32_t type = slots[slot].type;
    if (slot < kDrawnSlots && !slotNames[slot].IsEmpty() &&
        (type < StageDiffuse || type > StageSphere))
        file.Fail("Invalid type of texture slot %i: %i", slot, type);
}

/// Stages can show a reflection in slot 0 only; old exporters put it after the diffuse map.
void KRE_Texture::SwapReflectionToFront()
{
    if (slots[1].type != StageReflection && slots[1].type != StageSphere)
        return;
    std::swap(matrixAni[0], matrixAni[1]);
    std::swap(slotNames[0], slotNames[1]);
    std::swap(slots[0], slots[1]);
}

void KRE_Texture::LoadPicture(QSB_InputFile& file, int32_t slot)
{
    String& name = slotNames[slot];
    if (name.IsEmpty() || (slots[slot].type == StageBump && !file.bumpMaps))
        return;
    String path;
    if (!gGfx->FindTextureFile(&path, name.c_str(), file.directory.c_str())) {
        Warning("File '%s': Can not open texture: %s", file.GetFileName().c_str(), name.c_str());
        name.Clear();
        return;
    }
    if (sequenceCount > 0)
        TellOfMapBesideList(*this, file, name);
    SelectStage(slot);
    gGfx->LoadTexture(this, path.c_str(), 0, KRE_Gfx::kKeepTexture, -1,
                      file.singleMipLevel ? 1 : 0);
}
