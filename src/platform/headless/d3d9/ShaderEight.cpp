// Compiled for AVX2 on x86: see src/CMakeLists.txt. Nothing in here may run before the processor was asked,
// and no function of it may be one that other sources share.

#include "platform/headless/d3d9/ShaderPixels.h"

#ifdef __AVX2__

#include "platform/headless/d3d9/EightLanes.h"
#include "platform/headless/d3d9/RunSampling.h"
#include "platform/headless/d3d9/ShaderKernel.h"

namespace headless {

RunSampling EightRunSampling(const Sampler& sampler)
{
    return FindRunSampling<EightLanes>(sampler);
}

ShaderPixels* EightShaderPixels()
{
    if (!__builtin_cpu_supports("avx2"))
        return nullptr;
    static ShaderKernel<EightLanes> shader;
    return &shader;
}

} // namespace headless

#else

namespace headless {

RunSampling EightRunSampling(const Sampler&)
{
    return nullptr;
}

ShaderPixels* EightShaderPixels()
{
    return nullptr;
}

} // namespace headless

#endif
