#pragma once

#include "platform/headless/d3d9/Lanes.h"

namespace headless::shader {

/// How coordinates change from a pixel to its right and lower neighbours.
struct CoordinateSteps {
    Lanes dx[3];
    Lanes dy[3];
};

/// Coordinates of a run of pixels, one array for each with a value for each group of four. Groups 2i and
/// 2i + 1 are two rows of quads.
struct RunCoordinates {
    const Lanes* at[3];
    const Lanes* bias; ///< of the level; null for none
};

/// What a texture instruction reads through: a texture with its sampler, and what the oldest pixel
/// shaders take from the texture stage. The device provides it for each draw.
class TextureUnit {
public:
    /// Whether a level has to be given at all.
    virtual bool NeedsLevel() const = 0;
    /// As `Sample`, for the footprint of each pixel; `bias` moves the level.
    virtual void SampleSteps(const Lanes (&coordinates)[3], const CoordinateSteps& steps,
                             Lanes bias, int lanes, Lanes (&colourOut)[4]) const = 0;
    /// What the sampler adds to a level that the shader gives.
    virtual float Bias() const = 0;
    /// Four colours. Only those with a bit in `lanes` need be right; coordinates may be anything.
    virtual void Sample(const Lanes (&coordinates)[3], Lanes level, int lanes,
                        Lanes (&colourOut)[4]) const = 0;
    /// Samples all pixels of a run at the levels that their quads need; results may take the place of
    /// coordinates. False if it cannot, and then does nothing: each group is sampled on its own.
    virtual bool SampleRun(const RunCoordinates&, int /*groups*/,
                           Lanes* const (&/*coloursOut*/)[4]) const
    {
        return false;
    }

protected:
    ~TextureUnit() = default;
};

/// What pixel shaders before 1.4 read from the stage of a texture.
struct StageValues {
    bool isProjected = false; ///< tex divides the coordinates
    int divisor = 3;          ///< by this one
    float bumpMatrix[2][2] = {};
    float luminanceScale = 0.0f;
    float luminanceOffset = 0.0f;
};

} // namespace headless::shader
