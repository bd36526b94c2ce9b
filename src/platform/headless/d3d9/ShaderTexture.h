#pragma once

#include "platform/headless/d3d9/TextureSample.h"
#include "platform/headless/shader/Machine.h"

namespace headless {

using RunSampling = void (*)(const Sampler& sampler, const shader::RunCoordinates& coordinates,
                             int groups, Lanes* const (&coloursOut)[4]);

// How to sample all pixels of a run through a sampler; null if each group is sampled on its own. They give
// the same bits.

/// Four pixels at a time.
RunSampling FourRunSampling(const Sampler& sampler);
/// Eight at a time; only with shader::HasEightForms.
RunSampling EightRunSampling(const Sampler& sampler);

/// A texture with its sampler, as the programs of shaders read it.
class ShaderTexture final : public shader::TextureUnit {
public:
    bool NeedsLevel() const override { return sampler.NeedsLevel(); }
    float Bias() const override { return sampler.levelBias; }
    void SampleSteps(const Lanes (&coordinates)[3], const shader::CoordinateSteps& steps,
                     Lanes bias, int lanes, Lanes (&colourOut)[4]) const override;
    void Sample(const Lanes (&coordinates)[3], Lanes level, int lanes,
                Lanes (&colourOut)[4]) const override;
    bool SampleRun(const shader::RunCoordinates& coordinates, int groups,
                   Lanes* const (&coloursOut)[4]) const override;

    Sampler sampler;
    RunSampling sampleRun = nullptr;
    FlatSampling sampleFlat = nullptr; ///< null for cubes and volumes
};

/// The textures that one program reads.
class ShaderTextures {
public:
    /// Gives the machine the texture of each sampler that its program reads, from slot `first` of the
    /// state on. Fails for unknown sampler states and when memory runs out.
    HRESULT Prepare(const DrawState& state, const shader::Program& program, UINT first,
                    shader::Machine& machine);

private:
    ShaderTexture textures[kPixelSamplerCount];
};

/// Whether `ShaderTextures::Prepare` would fail; unpacks the textures.
HRESULT CheckShaderTextures(const DrawState& state, const shader::Program& program, UINT first);

/// Whether `ShaderTextures::Prepare` would fail for the states alone.
HRESULT CheckShaderSamplers(const DrawState& state, const shader::Program& program, UINT first);

} // namespace headless
