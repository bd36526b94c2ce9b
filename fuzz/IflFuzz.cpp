// Any frame list, byte for byte: its lines, and the load of all of them beside two pictures.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "fuzz/support/MemoryDisk.h"
#include "gfx/KRE_FrameList.h"
#include "gfx/KRE_Gfx.h"
#include "tests/support/HiddenWindow.h"

namespace {

/// An engine with a device, created once.
class Bench {
public:
    Bench()
    {
        engine.InitDevice(window.Handle(), 1, nullptr, 16, 0, 0, 0);
        engine.videoSources[3].width = engine.videoSources[3].height = 2;
        gLogEntries = kMaxLogEntries; // nothing is written
        PutMemoryPictures();
    }

private:
    HiddenWindow window{64, 64};

public:
    KRE_Gfx engine;
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

    static Bench bench;
    PutMemoryFile("list.ifl", text);
    {
        KRE_Texture texture;
        try {
            bench.engine.LoadTexture(&texture, "list.ifl", 0, -1, -1, 1);
            if (texture.sequenceCount < 1)
                std::abort();
        } catch (const KRE_Error&) {
        } catch (const ErrorMsg&) {}
    }
    if (bench.engine.textureManager.GetCount() != 0)
        std::abort();
    return 0;
}
