#include "platform/headless/d3d9/Lanes.h"
#include "platform/headless/d3d9/SpanKernel.h"

namespace headless {

SpanShader* FourSpanShader()
{
    static SpanKernel<FourLanes> shader;
    return &shader;
}

} // namespace headless
