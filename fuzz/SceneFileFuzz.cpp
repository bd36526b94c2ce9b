// Any QSB file, with any load flags. A scene that loads can be saved, a saved scene can be loaded, and the
// second save equals the first except for numbers rounded to 16 bits: it has the same size.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <unistd.h>

#include "base/ErrorClass.h"
#include "base/File.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "gfx/KRE_Gfx.h"
#include "scene/KRE_3dScene.h"
#include "tests/support/HiddenWindow.h"

namespace {

/// An engine and a directory for files, for the whole run.
class Stage {
public:
    Stage()
        : directory(std::filesystem::temp_directory_path() /
                    ("qsa2qsb-fuzz-" + std::to_string(getpid())))
    {
        std::filesystem::create_directory(directory);
        engine = std::make_unique<KRE_Gfx>();
        engine->InitDevice(window.Handle(), 1, nullptr, 16, 0, 2, 0);
        gGfx = engine.get();
    }
    ~Stage()
    {
        gGfx = nullptr;
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }

    std::string Path(const char* name) const { return (directory / name).string(); }

private:
    std::filesystem::path directory;
    HiddenWindow window{16, 16};
    std::unique_ptr<KRE_Gfx> engine;
};

bool Load(KRE_3dScene& scene, const std::string& path, uint32_t flags)
{
    try {
        gGfx->LoadScene(scene, path.c_str(), flags);
        return true;
    } catch (const ErrorMsg&) {
    } catch (const KRE_Error&) {}
    return false;
}

/// Size of the file that a scene is saved as.
int32_t Save(KRE_3dScene& scene, const std::string& path)
{
    gGfx->SaveScene(scene, path.c_str()); // an error here ends the run
    File file;
    if (!file.Open(path.c_str(), true, false, false))
        std::abort();
    return file.GetSize();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Stage stage;
    gLogEntries = kMaxLogEntries; // nothing is written
    if (size < 2)
        return 0;
    // The last byte selects the flags; the format ignores bytes after the last record.
    const std::string input = stage.Path("input.qsb");
    if (FILE* file = std::fopen(input.c_str(), "wb")) {
        std::fwrite("QSB", 1, 3, file);
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
    KRE_3dScene scene;
    if (!Load(scene, input, data[size - 1] & 15))
        return 0;
    scene.Update(0.75, 1);
    const std::string first = stage.Path("first.qsb");
    const int32_t firstSize = Save(scene, first);
    KRE_3dScene again;
    if (!Load(again, first, 0))
        std::abort();
    again.name = scene.name;
    if (Save(again, stage.Path("second.qsb")) != firstSize)
        std::abort();
    return 0;
}
