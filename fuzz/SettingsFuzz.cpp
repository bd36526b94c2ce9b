// Any file of settings: the default directories become texts within their room.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "base/Log.h"
#include "fuzz/support/MemoryFile.h"
#include "fuzz/support/Mutation.h"
#include "fuzz/support/ScratchDirectory.h"
#include "gfx/DefaultPaths.h"
#include "gfx/KRE_Gfx.h"

namespace {

/// An engine without a device, and a configuration whose file is in memory.
class Bench {
public:
    Bench()
    {
        gGfx = &engine;
        gLogEntries = kMaxLogEntries; // nothing is written
        const auto folder = directory.Path() / "Fenwhistle";
        std::filesystem::create_directory(folder);
        std::filesystem::create_symlink(file.Path(), folder / "QSAView.conf");
        setenv("XDG_CONFIG_HOME", directory.Path().c_str(), 1);
    }
    ~Bench() { gGfx = nullptr; }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    MemoryFile file;

private:
    ScratchDirectory directory;
    KRE_Gfx engine;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Bench bench;
    bench.file.Put(TextOf(data, size));
    ReadDefaultPaths();
    if (!std::memchr(gDefaultTexturePath, 0, sizeof gDefaultTexturePath) ||
        !std::memchr(gDefaultBasePath, 0, sizeof gDefaultBasePath))
        std::abort();
    return 0;
}
