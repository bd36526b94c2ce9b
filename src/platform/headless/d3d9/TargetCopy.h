#pragma once

#include "platform/headless/d3d9/DrawState.h"

namespace headless {

/// Lets a draw sample the picture that it draws into: it reads the picture as it was before.
class TargetCopy {
public:
    /// Puts a copy of the target in place of each level that is the target, in the textures that the
    /// draw reads. Valid for this draw. False if memory runs out.
    bool Replace(DrawState& state);

private:
    bool Copy(const PixelBuffer& target);

    SampledPicture copy;
    TexturePicture replaced[kSamplerCount];
};

} // namespace headless
