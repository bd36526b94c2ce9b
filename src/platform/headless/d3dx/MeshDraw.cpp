// Drawing the subsets of a mesh.

#include "platform/headless/d3dx/Mesh.h"

namespace headless {

HRESULT HeadlessMesh::DrawSubset(DWORD attributeId)
{
    HRESULT result = device->SetStreamSource(0, vertexBuffer.Get(), 0, GetNumBytesPerVertex());
    if (SUCCEEDED(result))
        result = device->SetFVF(fvf);
    if (SUCCEEDED(result))
        result = device->SetIndices(indexBuffer.Get());
    if (SUCCEEDED(result) && attributeTable.empty())
        return DrawUnsorted(attributeId);

    for (const D3DXATTRIBUTERANGE& range : attributeTable)
        if (SUCCEEDED(result) && range.AttribId == attributeId)
            result = DrawRange(range);
    return result;
}

HRESULT HeadlessMesh::DrawRange(const D3DXATTRIBUTERANGE& range)
{
    return device->DrawIndexedPrimitive(D3DPT_TRIANGLELIST, 0, range.VertexStart, range.VertexCount,
                                        range.FaceStart * 3, range.FaceCount);
}

/// Without a table, draws each run of equal attributes separately, over all vertices.
HRESULT HeadlessMesh::DrawUnsorted(DWORD attributeId)
{
    HRESULT result = D3D_OK;
    for (DWORD face = 0; face < faceCount && SUCCEEDED(result);) {
        const DWORD first = face;
        while (face < faceCount && attributes[face] == attributeId)
            ++face;
        if (face > first)
            result = DrawRange({attributeId, first, face - first, 0, vertexCount});
        else
            ++face;
    }
    return result;
}

} // namespace headless
