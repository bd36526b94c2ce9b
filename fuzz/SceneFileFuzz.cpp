// Any bytes as a QSB file: a scene or a documented error. A scene that loads is saved, loaded again and saved
// again with the same size, but for a texture with a frame list and two reflections.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/Log.h"
#include "fuzz/support/MemoryDisk.h"
#include "fuzz/support/Mutation.h"
#include "fuzz/support/SceneFileMutator.h"
#include "gfx/KRE_Gfx.h"
#include "scene/KRE_3dScene.h"
#include "tests/support/HiddenWindow.h"

namespace {

/// An engine with a device, created once.
class Stage {
public:
    Stage()
    {
        engine.InitDevice(window.Handle(), 1, nullptr, 16, 0, 2, 0);
        engine.loadsSceneEffects = 0; // they have targets of their own
        gGfx = &engine;
        gLogEntries = kMaxLogEntries; // nothing is written
        PutMemoryPictures();
    }
    ~Stage() { gGfx = nullptr; }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

private:
    HiddenWindow window{16, 16};
    KRE_Gfx engine;
};

/// The error; "" if the scene is loaded.
std::string Load(KRE_3dScene& scene, const char* path, uint32_t flags)
{
    try {
        gGfx->LoadScene(scene, path, flags);
        return "";
    } catch (const ErrorMsg& error) {
        return error.message;
    } catch (const KRE_Error& error) {
        return error.message;
    }
}

/// Whether a frame list is the second of two reflections. They change places with each load, so the next time it is
/// the first, and the other one is an error.
bool HasListBehindReflection(const KRE_3dScene& scene)
{
    const auto isSuch = [](const KRE_Texture& texture) {
        const int32_t second = texture.slots[1].type;
        return texture.sequenceCount > 0 && (second == StageReflection || second == StageSphere);
    };
    for (const KRE_Mesh* mesh : scene.meshes) {
        for (int32_t i = 0; i < mesh->materialCount; ++i) {
            if (isSuch(mesh->textures[i]))
                return true;
        }
    }
    return isSuch(scene.backgroundTexture);
}

/// Size of the file that a scene is saved as.
size_t Save(KRE_3dScene& scene, const char* path)
{
    gGfx->SaveScene(scene, path); // an error here ends the run
    const std::string* const saved = FindMemoryFile(path);
    if (!saved)
        std::abort();
    return saved->size();
}

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    if (seed % kPlainTurns == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    return ReplaceInput(MutateSceneFile(TextOf(data, size), seed), data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* data, size_t size, const uint8_t* other,
                                            size_t otherSize, uint8_t* out, size_t maxSize,
                                            unsigned seed)
{
    return ReplaceInput(CrossSceneFiles(TextOf(data, size), TextOf(other, otherSize), seed), out,
                        maxSize);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Stage stage;
    if (size < 2)
        return 0;
    // The last byte selects the flags; the format ignores bytes after the last record.
    PutMemoryFile("input.qsb", "QSB" + std::string(TextOf(data, size)));
    KRE_3dScene scene;
    const uint32_t last = data[size - 1];
    const uint32_t flags = (last & 16) != 0 ? ~0u : last & 15;
    if (!Load(scene, "input.qsb", flags).empty())
        return 0;
    scene.Update(0.75, 1);
    const size_t firstSize = Save(scene, "first.qsb");
    KRE_3dScene again;
    const std::string error = Load(again, "first.qsb", 0);
    if (!error.empty()) {
        if (HasListBehindReflection(scene) &&
            error.find("No stages with texture sequence allowed") != error.npos)
            return 0;
        std::abort();
    }
    again.name = scene.name;
    // Without bump maps, a background that is only a bump map is none.
    const bool mayShrink = flags != ~0u && (flags & 2) != 0;
    const size_t secondSize = Save(again, "second.qsb");
    if (secondSize > firstSize || (secondSize < firstSize && !mayShrink))
        std::abort();
    return 0;
}
