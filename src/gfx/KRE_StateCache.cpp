#include "gfx/KRE_StateCache.h"

#include <algorithm>
#include <iterator>

void KRE_StateCache::Reset()
{
    std::fill(std::begin(renderState), std::end(renderState), kUnknown);
    for (auto& stage : stageState)
        std::fill(std::begin(stage), std::end(stage), kUnknown);
    for (auto& sampler : samplerState)
        std::fill(std::begin(sampler), std::end(sampler), kUnknown);
    std::fill(std::begin(lightEnable), std::end(lightEnable), kUnknown);
    softwareVertexProcessing = kUnknown;
    cullMode = kUnknownCullMode;
}
