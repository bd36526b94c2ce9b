#include "platform/headless/d3d9/Blending.h"

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/Lanes.h"

namespace headless {

namespace {

bool IsKnownFactor(DWORD blend)
{
    return BlendFactors<FourLanes>::Find(blend) != nullptr;
}

} // namespace

HRESULT MakeBlendChoice(DWORD source, DWORD target, DWORD operation, BlendChoice& choiceOut)
{
    if (operation < D3DBLENDOP_ADD || operation > D3DBLENDOP_MAX)
        return Unmodelled("D3DRS_BLENDOP", operation);
    // These two set both factors and override the other one.
    if (source == D3DBLEND_BOTHSRCALPHA) {
        source = D3DBLEND_SRCALPHA;
        target = D3DBLEND_INVSRCALPHA;
    } else if (source == D3DBLEND_BOTHINVSRCALPHA) {
        source = D3DBLEND_INVSRCALPHA;
        target = D3DBLEND_SRCALPHA;
    }
    choiceOut = {source, target, operation};
    if (!IsKnownFactor(source))
        return Unmodelled("D3DRS_SRCBLEND", source);
    return IsKnownFactor(target) ? D3D_OK : Unmodelled("D3DRS_DESTBLEND", target);
}

} // namespace headless
