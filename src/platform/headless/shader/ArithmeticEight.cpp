// Compiled for AVX2 on x86: see src/CMakeLists.txt. Nothing in here may run before the processor was asked,
// and no function of it may be one that other sources share.

#include "platform/headless/shader/Kernels.h"

#ifdef __AVX2__

#include "platform/headless/d3d9/EightLanes.h"
#include "platform/headless/shader/ArithmeticKernels.h"

namespace headless::shader {

namespace {

using Eight = Arithmetic<EightLanes>;

struct OtherForm {
    RunFunction four, eight;
};

constexpr OtherForm kOthers[] = {
    {RunMove, Each<EightLanes, false, 1, Eight::Move>},
    {RunRoundNearest, Each<EightLanes, false, 1, Eight::RoundNearest>},
    {RunRoundDown, Each<EightLanes, false, 1, Eight::RoundDown>},
    {RunOldExp, Whole<EightLanes, Eight::OldExp>},
    {RunOldLog, Whole<EightLanes, Eight::OldLog>},
    {RunDerivativeX, Derivative<EightLanes, true>},
    {RunDerivativeY, Derivative<EightLanes, false>},
};

} // namespace

bool HasEightForms()
{
    return __builtin_cpu_supports("avx2") != 0;
}

RunFunction EightFormOf(RunFunction four)
{
    for (const KernelRow<EightLanes>& row : kKernelRows<EightLanes>) {
        const Kernel& ofFour = *FindKernel(row.opcode);
        if (ofFour.plain == four)
            return row.kernel.plain;
        if (ofFour.modified == four)
            return row.kernel.modified;
    }
    for (const OtherForm& other : kOthers)
        if (other.four == four)
            return other.eight;
    return four;
}

} // namespace headless::shader

#else

namespace headless::shader {

bool HasEightForms()
{
    return false;
}

RunFunction EightFormOf(RunFunction four)
{
    return four;
}

} // namespace headless::shader

#endif
