// A source of its own: programs that load scenes without drawing them do not link it.

#include "gfx/KRE_Gfx.h"

#include "gfx/EffectPasses.h"
#include "platform/ComPointer.h"

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
