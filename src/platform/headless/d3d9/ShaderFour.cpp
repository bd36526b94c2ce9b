#include "platform/headless/d3d9/Lanes.h"
#include "platform/headless/d3d9/RunSampling.h"
#include "platform/headless/d3d9/ShaderKernel.h"

namespace headless {

RunSampling FourRunSampling(const Sampler& sampler)
{
    return FindRunSampling<FourLanes>(sampler);
}

ShaderPixels* FourShaderPixels()
{
    static ShaderKernel<FourLanes> shader;
    return &shader;
}

} // namespace headless
