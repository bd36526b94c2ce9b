#include "gfx/KRE_Gfx.h"

#include <algorithm>

/// The largest point of software vertex processing, whatever the hardware reports.
static constexpr float kSoftwarePointSize = 64.0f;

void KRE_Gfx::SetPointParameters(KRE_PointRecord& record, int32_t sprites)
{
    SetRenderStateOnce(D3DRS_POINTSPRITEENABLE, static_cast<DWORD>(record.spriteEnable));
    SetRenderStateOnce(D3DRS_POINTSCALEENABLE, static_cast<DWORD>(record.scaleEnable));
    SetRenderStateOnce(D3DRS_POINTSIZE, record.size);
    if (record.scaleEnable) {
        const float allowed =
            sprites ? caps.MaxPointSize : std::max(caps.MaxPointSize, kSoftwarePointSize);
        if (record.sizeMax > allowed) {
            Warning("Point size max adjusted from %f to %f", static_cast<double>(record.sizeMax),
                    static_cast<double>(allowed));
            record.sizeMax = allowed;
        }
    }
    const struct {
        D3DRENDERSTATETYPE state;
        float value;
    } sizes[] = {
        {D3DRS_POINTSIZE_MIN, record.sizeMin}, {D3DRS_POINTSIZE_MAX, record.sizeMax},
        {D3DRS_POINTSCALE_A, record.scaleA},   {D3DRS_POINTSCALE_B, record.scaleB},
        {D3DRS_POINTSCALE_C, record.scaleC},
    };
    for (const auto& size : sizes)
        SetRenderStateOnce(size.state, size.value);
}
