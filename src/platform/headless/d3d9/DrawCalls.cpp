// UNMODELLED: drawing. The calls are refused until there is a rasterizer behind them.

#include "platform/headless/d3d9/Device.h"

HRESULT HeadlessDevice::DrawPrimitive(D3DPRIMITIVETYPE primitiveType, UINT startVertex,
                                      UINT primitiveCount)
{
    return Unmodelled("DrawPrimitive", primitiveType, startVertex, primitiveCount);
}

HRESULT HeadlessDevice::DrawIndexedPrimitive(D3DPRIMITIVETYPE type, INT baseVertexIndex,
                                             UINT minVertexIndex, UINT numVertices, UINT startIndex,
                                             UINT primitiveCount)
{
    return Unmodelled("DrawIndexedPrimitive", type, baseVertexIndex, minVertexIndex, numVertices,
                      startIndex, primitiveCount);
}

HRESULT HeadlessDevice::DrawPrimitiveUP(D3DPRIMITIVETYPE primitiveType, UINT primitiveCount,
                                        const void* data, UINT stride)
{
    return Unmodelled("DrawPrimitiveUP", primitiveType, primitiveCount, data, stride);
}

HRESULT HeadlessDevice::DrawIndexedPrimitiveUP(D3DPRIMITIVETYPE primitiveType, UINT minVertexIndex,
                                               UINT vertexCount, UINT primitiveCount,
                                               const void* indexData, D3DFORMAT indexFormat,
                                               const void* data, UINT stride)
{
    return Unmodelled("DrawIndexedPrimitiveUP", primitiveType, minVertexIndex, vertexCount,
                      primitiveCount, indexData, indexFormat, data, stride);
}
