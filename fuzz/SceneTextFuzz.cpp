// Any text as a scene, loaded through windows of several sizes: a scene or a documented error, and the
// same one every time. A scene that loads is sound. A last byte of 128 or above selects the flags of the load.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/KRE_Base.h"
#include "base/Log.h"
#include "fuzz/support/MemoryDisk.h"
#include "fuzz/support/Mutation.h"
#include "fuzz/support/SceneTextMutator.h"
#include "gfx/KRE_Gfx.h"
#include "qsa/QSALoader.h"
#include "scene/KRE_3dScene.h"
#include "tests/qsa/SceneFaultsOf.h"
#include "tests/support/HiddenWindow.h"

namespace {

constexpr const char* kFile = "input.qsa";

/// An engine with a device, created once.
class Engine {
public:
    Engine()
    {
        gfx.InitDevice(hidden.Handle(), 1, nullptr, 16, 0, 2, 0);
        gGfx = &gfx;
        gLogEntries = kMaxLogEntries; // nothing is written
        PutMemoryPictures();
    }
    ~Engine() { gGfx = nullptr; }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// The visible state of the scene that the file gives, or the error.
    std::string Load(int32_t window, uint32_t flags)
    {
        QSALoader loader;
        loader.SetWindow(window);
        loader.SetKeyPartLimits({300, 1000});
        KRE_3dScene scene;
        try {
            loader.Load(scene, kFile, flags);
        } catch (const ErrorMsg& error) {
            return error.message;
        } catch (const KRE_Error& error) {
            return error.message;
        }
        return Describe(scene);
    }

private:
    static std::string Describe(KRE_3dScene& scene)
    {
        const std::string faults = FaultsOf(scene, true);
        if (!faults.empty()) {
            std::fprintf(stderr, "%s", faults.c_str());
            std::abort();
        }
        std::string seen = std::to_string(scene.cameras.Count()) + ' ' +
                           std::to_string(scene.lights.Count()) + ' ' +
                           std::to_string(scene.backgroundColor);
        for (const KRE_Mesh* mesh : scene.meshes)
            seen += ' ' + std::to_string(mesh->vertexCount) + mesh->name.c_str();
        for (const KRE_3dObject* object : scene.objects)
            seen += ' ' + std::to_string(object->posKeyCount + object->rotKeyCount) +
                    object->name.c_str();
        return seen;
    }

    HiddenWindow hidden{64, 64};
    KRE_Gfx gfx;
};

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    if (seed % kPlainTurns == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    return ReplaceInput(MutateSceneText(TextOf(data, size), seed), data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* data, size_t size, const uint8_t* other,
                                            size_t otherSize, uint8_t* out, size_t maxSize,
                                            unsigned seed)
{
    return ReplaceInput(CrossSceneTexts(TextOf(data, size), TextOf(other, otherSize), seed), out,
                        maxSize);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Engine engine;
    PutMemoryFile(kFile, TextOf(data, size));
    const uint32_t flags =
        size > 0 && data[size - 1] >= 0x80 ? data[size - 1] & 31u : uint32_t{kLoadBumpMaps};
    const std::string expected = engine.Load(256 * 1024, flags);
    // The smallest window, or one that ends within the text.
    const int32_t window = size % 2 == 0 ? 1 : 300 + static_cast<int32_t>(size) / 3;
    if (engine.Load(window, flags) != expected)
        std::abort();
    return 0;
}
