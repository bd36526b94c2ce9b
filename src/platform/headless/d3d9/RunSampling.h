#pragma once

#include "platform/headless/d3d9/ShaderTexture.h"
#include "platform/headless/d3d9/StageSampling.h"

namespace headless {

// Sampling all pixels of a run of a pixel shader, for one form of lanes.

/// One of the coordinates, for each part of the form's lanes.
template <typename F>
struct RunPart {
    const Lanes* values;

    typename F::Floats operator[](int group) const
    {
        return F::Load(reinterpret_cast<const float*>(values + group));
    }
};

template <typename F>
void StoreRun(const Rgba<F>& colour, int group, Lanes* const (&coloursOut)[4])
{
    for (int c = 0; c < 4; ++c)
        F::Store(reinterpret_cast<float*>(coloursOut[c] + group), colour.c[c]);
}

/// Two coordinates are enough.
template <typename F, SampleFunction<F> Sample>
void SampleRunFlat(const Sampler& sampler, const shader::RunCoordinates& coordinates, int groups,
                   Lanes* const (&coloursOut)[4])
{
    const RunPart<F> u = {coordinates.at[0]}, v = {coordinates.at[1]};
    const auto noLevel = F::Splat(0.0f);
    for (int g = 0; g < groups; g += F::kCount / 4)
        StoreRun<F>(Sample(sampler, u[g], v[g], noLevel, (1 << F::kCount) - 1), g, coloursOut);
}

/// Any texture that needs no level.
template <typename F>
void SampleRunPlaces(const Sampler& sampler, const shader::RunCoordinates& coordinates, int groups,
                     Lanes* const (&coloursOut)[4])
{
    const RunPart<F> u = {coordinates.at[0]}, v = {coordinates.at[1]}, w = {coordinates.at[2]};
    const auto noLevel = F::Splat(0.0f);
    for (int g = 0; g < groups; g += F::kCount / 4)
        StoreRun<F>(SamplePlace<F>(sampler, {u[g], v[g], w[g]}, noLevel, (1 << F::kCount) - 1), g,
                    coloursOut);
}

/// Any texture; a part has to hold both rows of its quads.
template <typename F>
void SampleRunQuads(const Sampler& sampler, const shader::RunCoordinates& coordinates, int groups,
                    Lanes* const (&coloursOut)[4])
{
    static_assert(F::kRows == 2);
    const RunPart<F> u = {coordinates.at[0]}, v = {coordinates.at[1]}, w = {coordinates.at[2]};
    const RunPart<F> bias = {coordinates.bias};
    const auto across = [](auto value) { return OddLanes(value) - EvenLanes(value); };
    for (int g = 0; g < groups; g += F::kCount / 4) {
        const TexturePlace<F> at = {u[g], v[g], w[g]};
        const TextureFootprint<F> footprint = {
            at,
            {across(at.u), across(at.v), across(at.w)},
            {HalvesDifference(at.u), HalvesDifference(at.v), HalvesDifference(at.w)}};
        StoreRun<F>(SampleFootprint<F>(sampler, footprint,
                                       coordinates.bias ? bias[g] : F::Splat(0.0f),
                                       (1 << F::kCount) - 1),
                    g, coloursOut);
    }
}

/// With four lanes null for all but the most frequent textures.
template <typename F>
RunSampling FindRunSampling(const Sampler& sampler)
{
    if (sampler.kind == TextureKind::Flat && sampler.IsSimple())
        return WithMode(sampler.addressU, [&]<D3DTEXTUREADDRESS Mode>() -> RunSampling {
            return sampler.minifiesLinear ? SampleRunFlat<F, SampleOneLevel<F, Mode, true>>
                                          : SampleRunFlat<F, SampleOneLevel<F, Mode, false>>;
        });
    if constexpr (F::kRows == 2)
        return sampler.NeedsLevel() ? SampleRunQuads<F> : SampleRunPlaces<F>;
    return nullptr;
}

} // namespace headless
