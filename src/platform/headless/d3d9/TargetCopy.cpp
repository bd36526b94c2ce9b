#include "platform/headless/d3d9/TargetCopy.h"

#include "platform/headless/shader/Program.h"

#include <algorithm>
#include <cstring>

namespace headless {

namespace {

/// Stages up to the first disabled one read textures, unless a pixel shader takes their place.
unsigned SlotsRead(const DrawState& state)
{
    unsigned slots = state.vertexProgram ? state.vertexProgram->samplers << kPixelSamplerCount : 0;
    if (state.pixelProgram)
        return slots | state.pixelProgram->samplers;
    for (UINT i = 0; i < kStageCount && state.stage[i][D3DTSS_COLOROP] != D3DTOP_DISABLE; ++i)
        slots |= 1u << i;
    return slots;
}

bool Holds(const TexturePicture& picture, const PixelBuffer* target)
{
    return std::any_of(picture.levels.begin(), picture.levels.end(),
                       [target](const SampledPicture* level) { return &level->pixels == target; });
}

} // namespace

bool TargetCopy::Copy(const PixelBuffer& target)
{
    PixelBuffer& pixels = copy.pixels;
    const bool fits = pixels.bytes && pixels.format == target.format &&
                      pixels.width == target.width && pixels.height == target.height;
    if (!fits && !pixels.Allocate(*target.format, target.width, target.height))
        return false;
    std::memcpy(pixels.bytes.get(), target.bytes.get(), target.pitchBytes * target.height);
    ++pixels.changes;
    return true;
}

bool TargetCopy::Replace(DrawState& state)
{
    const unsigned slots = SlotsRead(state);
    bool isCopied = false;
    for (UINT i = 0; i < kSamplerCount; ++i) {
        if ((slots >> i & 1) == 0 || !state.pictures[i] || !Holds(*state.pictures[i], state.target))
            continue;
        if (!isCopied && !Copy(*state.target))
            return false;
        isCopied = true;
        replaced[i] = *state.pictures[i];
        for (SampledPicture*& level : replaced[i].levels)
            if (&level->pixels == state.target)
                level = &copy;
        state.pictures[i] = &replaced[i];
    }
    return true;
}

} // namespace headless
