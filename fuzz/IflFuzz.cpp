// Any frame list, byte for byte: its lines, and the load of all of them in an empty directory.

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include <unistd.h>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "base/ResetLogForTests.h"
#include "gfx/KRE_FrameList.h"
#include "gfx/KRE_Gfx.h"
#include "tests/support/HiddenWindow.h"

namespace {

/// An engine with a device, in its own directory with the list and the log.
class Bench {
public:
    Bench()
        : directory(std::filesystem::temp_directory_path() /
                    ("qsa2qsb-ifl-" + std::to_string(getpid())))
    {
        std::filesystem::create_directory(directory);
        engine = std::make_unique<KRE_Gfx>();
        engine->InitDevice(window.Handle(), 1, nullptr, 16, 0, 0, 0);
        engine->videoSources[3].width = engine->videoSources[3].height = 2;
    }
    ~Bench()
    {
        engine.reset();
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    std::filesystem::path directory;
    HiddenWindow window{64, 64};
    std::unique_ptr<KRE_Gfx> engine;
};

/// Works in a directory for as long as it lives: the fuzzer's own paths are relative.
class InDirectory {
public:
    explicit InDirectory(const std::filesystem::path& directory)
        : before(std::filesystem::current_path())
    {
        std::filesystem::current_path(directory);
    }
    ~InDirectory() { std::filesystem::current_path(before); }
    InDirectory(const InDirectory&) = delete;
    InDirectory& operator=(const InDirectory&) = delete;

private:
    std::filesystem::path before;
};

/// Whether a part of `text` is a valid result for a line: within it, trimmed, on one line.
bool IsTrimmedPart(std::string_view part, std::string_view text)
{
    const auto isBlank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    return !part.empty() && part.data() >= text.data() &&
           part.data() + part.size() <= text.data() + text.size() && !isBlank(part.front()) &&
           !isBlank(part.back()) && part.find_first_of("\r\n") == std::string_view::npos;
}

void CheckLines(std::string_view text)
{
    int32_t before = 0;
    for (const KRE_FrameLine& line : SplitFrameList(text)) {
        const KRE_FrameRun run = SplitFrameCount(line.text);
        if (!IsTrimmedPart(line.text, text) || !IsTrimmedPart(run.name, line.text) ||
            line.number <= before || run.count < 1 || run.count > kMostFrames + 1)
            std::abort();
        before = line.number;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    CheckLines(text);

    static const Bench bench;
    KRE_Gfx& engine = *bench.engine;
    const InDirectory inside(bench.directory);
    ResetLogForTests();
    std::ofstream("list.ifl", std::ios::binary) << text;
    {
        KRE_Texture texture;
        try {
            engine.LoadTexture(&texture, "list.ifl", 0, -1, -1, 1);
            if (texture.sequenceCount < 1)
                std::abort();
        } catch (const KRE_Error&) {
        } catch (const ErrorMsg&) {}
    }
    if (engine.textureManager.GetCount() != 0)
        std::abort();
    return 0;
}
