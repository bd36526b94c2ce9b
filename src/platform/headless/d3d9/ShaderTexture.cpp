#include "platform/headless/d3d9/ShaderTexture.h"

#include <algorithm>

namespace headless {

namespace {

Place4 PlaceAt(const Lanes (&coordinates)[3])
{
    return {coordinates[0], coordinates[1], coordinates[2]};
}

} // namespace

void ShaderTexture::SampleSteps(const Lanes (&coordinates)[3], const shader::CoordinateSteps& steps,
                                Lanes bias, int lanes, Lanes (&colourOut)[4]) const
{
    const Footprint4 footprint = {PlaceAt(coordinates), PlaceAt(steps.dx), PlaceAt(steps.dy)};
    std::ranges::copy(SampleTexture(sampler, footprint, bias, lanes).c, colourOut);
}

void ShaderTexture::Sample(const Lanes (&coordinates)[3], Lanes level, int lanes,
                           Lanes (&colourOut)[4]) const
{
    const Rgba4 colour = sampleFlat
                             ? sampleFlat(sampler, coordinates[0], coordinates[1], level, lanes)
                             : SampleTexture(sampler, PlaceAt(coordinates), level, lanes);
    for (int c = 0; c < 4; ++c)
        colourOut[c] = colour.c[c];
}

bool ShaderTexture::SampleRun(const shader::RunCoordinates& coordinates, int groups,
                              Lanes* const (&coloursOut)[4]) const
{
    if (sampleRun)
        sampleRun(sampler, coordinates, groups, coloursOut);
    return sampleRun != nullptr;
}

HRESULT CheckShaderSamplers(const DrawState& state, const shader::Program& program, UINT first)
{
    for (UINT i = 0; i < kPixelSamplerCount; ++i) {
        if ((program.samplers >> i & 1) == 0)
            continue;
        if (const HRESULT result = CheckSamplerStates(state, first + i); FAILED(result))
            return result;
    }
    return D3D_OK;
}

HRESULT CheckShaderTextures(const DrawState& state, const shader::Program& program, UINT first)
{
    Sampler sampler;
    for (UINT i = 0; i < kPixelSamplerCount; ++i) {
        if ((program.samplers >> i & 1) == 0 || !state.pictures[first + i])
            continue;
        if (const HRESULT result = MakeSampler(state, first + i, sampler); FAILED(result))
            return result;
    }
    return D3D_OK;
}

HRESULT ShaderTextures::Prepare(const DrawState& state, const shader::Program& program, UINT first,
                                shader::Machine& machine)
{
    for (UINT i = 0; i < kPixelSamplerCount; ++i) {
        machine.units[i] = nullptr;
        if ((program.samplers >> i & 1) == 0 || !state.pictures[first + i])
            continue;
        const HRESULT result = MakeSampler(state, first + i, textures[i].sampler);
        if (FAILED(result))
            return result;
        textures[i].sampleFlat = FindFlatSampling(textures[i].sampler);
        textures[i].sampleRun = machine.IsEight() ? EightRunSampling(textures[i].sampler)
                                                  : FourRunSampling(textures[i].sampler);
        machine.units[i] = &textures[i];
    }
    return D3D_OK;
}

} // namespace headless
