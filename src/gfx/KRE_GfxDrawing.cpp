#include "gfx/KRE_Gfx.h"

#include "gfx/EffectPasses.h"

void KRE_Gfx::SetVertexProcessingFor(int32_t processing)
{
    SetSoftwareVertexProcessing(processing >= 1 ? 0 : 1);
}

void KRE_Gfx::DrawTriangleList(KRE_VertexListBase& list, const D3DMATRIX* listTM, int32_t count)
{
    if (count == -1)
        count = list.primitiveCount;
    if (count == 0)
        return;
    if (count < 0 || count > list.primitiveCount)
        Error("Number of elements in DrawTriangleList too high! (%i)", count);

    const VertexInfo& info = list.info;
    SetVertexProcessingFor(info.processing);
    D3DXMATRIX identity;
    SetWorldMatrix(listTM ? *listTM : *D3DXMatrixIdentity(&identity));
    if (list.isPointSprite)
        SetPointParameters(list.points, info.processing);
    Check(device->SetStreamSource(0, list.buffer.Get(), 0, static_cast<UINT>(info.stride)),
          "SetStreamSource in DrawVertexList failed: %s");
    SetFVF(info.fvf);
    const auto type = static_cast<D3DPRIMITIVETYPE>(list.primitiveType);
    KRE_ShaderEffect* const effect = GetActiveEffect(info);
    if (effect)
        PrepareEffect(*effect, nullptr, -1);
    DrawInPasses(
        *this, effect, [&] { return device->DrawPrimitive(type, 0, static_cast<UINT>(count)); },
        "DrawPrimitive in DrawTriangleList failed: %s");
}
