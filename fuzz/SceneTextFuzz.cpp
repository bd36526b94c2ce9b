// Any text as a scene, loaded through windows of several sizes: a scene or a documented error, and the
// same one every time. A scene that loads is sound.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/KRE_Base.h"
#include "base/Log.h"
#include "gfx/KRE_Gfx.h"
#include "qsa/QSALoader.h"
#include "scene/KRE_3dScene.h"
#include "tests/qsa/SceneFaultsOf.h"
#include "tests/support/HiddenWindow.h"

namespace {

/// An engine with a device, created once.
class Engine {
public:
    Engine()
    {
        gfx.InitDevice(hidden.Handle(), 1, nullptr, 16, 0, 2, 0);
        gGfx = &gfx;
        gLogEntries = kMaxLogEntries; // nothing is written
        std::snprintf(path, sizeof path, "scene_text_fuzz_%ld.qsa", static_cast<long>(getpid()));
    }
    ~Engine()
    {
        std::remove(path);
        gGfx = nullptr;
    }

    /// The visible state of the scene that a file gives, or the error.
    std::string Load(int32_t window)
    {
        QSALoader loader;
        loader.SetWindow(window);
        KRE_3dScene scene;
        try {
            loader.Load(scene, path, kLoadBumpMaps);
        } catch (const ErrorMsg& error) {
            return error.message;
        } catch (const KRE_Error& error) {
            return error.message;
        }
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

    char path[64];

private:
    HiddenWindow hidden{64, 64};
    KRE_Gfx gfx;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Engine engine;
    std::FILE* file = std::fopen(engine.path, "wb");
    if (!file)
        return 0;
    std::fwrite(data, 1, size, file);
    std::fclose(file);

    const std::string expected = engine.Load(256 * 1024);
    if (engine.Load(1) != expected || engine.Load(300 + static_cast<int32_t>(size) / 3) != expected)
        std::abort();
    return 0;
}
