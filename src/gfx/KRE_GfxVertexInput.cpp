#include "gfx/KRE_Gfx.h"

void KRE_Gfx::SetFVF(DWORD fvf)
{
    Check(device->SetFVF(fvf), "Failed to set flexible vertex format: %s");
    currentFvf = fvf;
}

void KRE_Gfx::SetStreamSource(UINT stream, IDirect3DVertexBuffer9* buffer, UINT stride)
{
    streamNumber = stream;
    Check(device->SetStreamSource(0, buffer, 0, stride), "SetStreamSource failed: %s");
}

void KRE_Gfx::SetIndices(IDirect3DIndexBuffer9* buffer)
{
    Check(device->SetIndices(buffer), "SetIndices failed: %s");
}

void KRE_Gfx::SetSoftwareVertexProcessing(int32_t on)
{
    if (!hardwareVertexProcessing || cache.softwareVertexProcessing == on)
        return;
    lastResult = device->SetSoftwareVertexProcessing(on);
    if (SUCCEEDED(lastResult))
        cache.softwareVertexProcessing = on;
}

void KRE_Gfx::SetVertexBlend(DWORD value)
{
    SetRenderStateOnce(D3DRS_VERTEXBLEND, value);
}

int32_t KRE_Gfx::SetIndexedVertexBlend(int32_t on)
{
    const bool isSoftware = !hardwareVertexProcessing || cache.softwareVertexProcessing == 1;
    if (!isSoftware && caps.MaxVertexBlendMatrixIndex == 0)
        return 0;
    SetRenderStateOnce(D3DRS_INDEXEDVERTEXBLENDENABLE, static_cast<DWORD>(on));
    return 1;
}
