#include "gfx/KRE_Gfx.h"

#include "gfx/EffectPasses.h"
#include "platform/ComPointer.h"

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

void KRE_Gfx::DrawMesh(ID3DXMesh& mesh, const VertexInfo& info, DWORD firstFace, DWORD faces)
{
    static constexpr const char* kDrawFailed = "DrawIndexedPrimitive failed: %s";
    if (faces == 0)
        return;
    const DWORD faceCount = mesh.GetNumFaces();
    if (firstFace > faceCount || faces > faceCount - firstFace)
        Check(D3DERR_INVALIDCALL, kDrawFailed);

    SetVertexProcessingFor(info.processing);
    ComPointer<IDirect3DVertexBuffer9> vertices;
    Check(mesh.GetVertexBuffer(vertices.Out()), "GetVertexBuffer failed: %s");
    ComPointer<IDirect3DIndexBuffer9> indices;
    Check(mesh.GetIndexBuffer(indices.Out()), "GetIndexBuffer failed: %s");
    SetIndices(indices.Get());
    SetFVF(info.fvf);
    SetStreamSource(0, vertices.Get(), static_cast<UINT>(info.stride));
    const auto drawFaces = [&] {
        return device->DrawIndexedPrimitive(D3DPT_TRIANGLELIST, 0, 0, mesh.GetNumVertices(),
                                            firstFace * 3, faces);
    };
    KRE_ShaderEffect* const effect = GetActiveEffect(info);
    if (effect)
        PrepareEffect(*effect, nullptr, -1);
    DrawInPasses(*this, effect, drawFaces, kDrawFailed);
}
