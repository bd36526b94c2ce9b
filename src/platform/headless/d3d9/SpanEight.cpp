// Compiled for AVX2 on x86: see src/CMakeLists.txt. Nothing in here may run before the processor was asked,
// and no function of it may be one that other sources share.

#include "platform/headless/d3d9/SpanShader.h"

#ifdef __AVX2__

#include "platform/headless/d3d9/EightLanes.h"
#include "platform/headless/d3d9/SpanKernel.h"

namespace headless {

SpanShader* EightSpanShader()
{
    if (!__builtin_cpu_supports("avx2"))
        return nullptr;
    static SpanKernel<EightLanes> shader;
    return &shader;
}

} // namespace headless

#else

namespace headless {

SpanShader* EightSpanShader()
{
    return nullptr;
}

} // namespace headless

#endif
