// The four draw calls: check their arguments and pass them to the rasterizer. Also
// `ValidateDevice`, which answers whether they would be refused.

#include "platform/CutDraw.h"
#include "platform/headless/d3d9/Audience.h"
#include "platform/headless/d3d9/Device.h"

#include <algorithm>
#include <new>
#include <utility>

namespace headless {

namespace {

/// What all draw calls check first. Drawing nothing is not an error.
bool IsPrimitive(D3DPRIMITIVETYPE type)
{
    return CornerCount(type) != 0;
}

/// The bound stream, with the number of whole vertices in it. False if none is bound.
bool FindStream(const DeviceState& state, const VertexLayout& layout, VertexStream& streamOut)
{
    const StreamSlot& slot = state.streams[0];
    if (!slot.buffer.Get())
        return false;
    const BufferBytes& data = slot.buffer.Get()->Data();
    if (slot.offsetBytes > data.size || layout.sizeBytes > data.size - slot.offsetBytes)
        return false;
    const UINT spare = data.size - slot.offsetBytes - layout.sizeBytes;
    streamOut.bytes = data.bytes.get() + slot.offsetBytes;
    streamOut.strideBytes = slot.strideBytes;
    streamOut.count = slot.strideBytes == 0 ? 1 : spare / slot.strideBytes + 1;
    return true;
}

UINT IndexBytes(D3DFORMAT format)
{
    return format == D3DFMT_INDEX32 ? 4 : 2;
}

/// The bound indices, if all `count` from `first` on exist.
bool FindIndices(const DeviceState& state, UINT first, uint64_t count, IndexSource& indicesOut)
{
    HeadlessIndexBuffer* buffer = state.indices.Get();
    if (!buffer)
        return false;
    const UINT size = IndexBytes(buffer->Desc().Format);
    indicesOut.bytes = buffer->Data().bytes.get();
    indicesOut.sizeBytes = size;
    indicesOut.first = first;
    return first + count <= buffer->Data().size / size;
}

bool gHasCutDraw = false;  // a draw was cut off since `TakeCutDraw`
bool gHasCutFrame = false; // a frame was, since `TakeCutFrame`

} // namespace

HRESULT HeadlessDevice::Draw(const DrawRequest& request, const VertexLayout& layout)
{
    if (!HasAudience())
        return LeaveUndrawn(state.ForDrawing(), layout, request);
    if (!rasterizer)
        rasterizer.reset(new (std::nothrow) Rasterizer());
    state.ForDrawing();
    if (!rasterizer || !targetCopy.Replace(state))
        return E_OUTOFMEMORY;
    const HRESULT result = rasterizer->Draw(state, layout, request);
    if (rasterizer->TakeCutOff())
        gHasCutDraw = true;
    if (rasterizer->TakeFrameCut())
        gHasCutFrame = true;
    return result;
}

/// Fails if a draw with these states would be refused; any draw takes one pass.
HRESULT HeadlessDevice::ValidateDevice(DWORD* numPassesOut)
{
    if (!numPassesOut)
        return D3DERR_INVALIDCALL;
    *numPassesOut = 1;
    VertexLayout layout;
    if (state.fvf != 0 && !MakeVertexLayout(state.fvf, layout)) // 0: not set yet
        return Unmodelled("D3DFVF", state.fvf);
    return CheckPixelStates(state.ForDrawing());
}

void HeadlessDevice::ForgetStream()
{
    state.streams[0].buffer.Set(nullptr);
    state.streams[0].offsetBytes = state.streams[0].strideBytes = 0;
}

HRESULT HeadlessDevice::DrawPrimitive(D3DPRIMITIVETYPE primitiveType, UINT startVertex,
                                      UINT primitiveCount)
{
    if (!state.inScene || !IsPrimitive(primitiveType))
        return D3DERR_INVALIDCALL;
    if (primitiveCount == 0)
        return D3D_OK;
    VertexLayout layout;
    DrawRequest request = {primitiveType, primitiveCount, {}, {}};
    if (!MakeVertexLayout(state.fvf, layout) || !FindStream(state, layout, request.stream))
        return D3DERR_INVALIDCALL;
    request.indices.first = startVertex;
    return Draw(request, layout);
}

HRESULT HeadlessDevice::DrawIndexedPrimitive(D3DPRIMITIVETYPE type, INT baseVertexIndex, UINT, UINT,
                                             UINT startIndex, UINT primitiveCount)
{
    if (!state.inScene || !IsPrimitive(type))
        return D3DERR_INVALIDCALL;
    if (primitiveCount == 0)
        return D3D_OK;
    VertexLayout layout;
    DrawRequest request = {type, primitiveCount, {}, {}};
    if (!MakeVertexLayout(state.fvf, layout) || !FindStream(state, layout, request.stream) ||
        !FindIndices(state, startIndex, VertexCountOf(type, primitiveCount), request.indices))
        return D3DERR_INVALIDCALL;
    request.indices.base = baseVertexIndex;
    return Draw(request, layout);
}

/// Leaves stream 0 empty afterwards, as published.
HRESULT HeadlessDevice::DrawPrimitiveUP(D3DPRIMITIVETYPE primitiveType, UINT primitiveCount,
                                        const void* data, UINT stride)
{
    VertexLayout layout;
    if (!state.inScene || !IsPrimitive(primitiveType) || !data || stride == 0 ||
        !MakeVertexLayout(state.fvf, layout))
        return D3DERR_INVALIDCALL;
    if (primitiveCount == 0)
        return D3D_OK;
    const uint64_t count = VertexCountOf(primitiveType, primitiveCount);
    const VertexStream stream = {static_cast<const uint8_t*>(data), stride,
                                 static_cast<UINT>(std::min<uint64_t>(count, 0xFFFFFFFF))};
    const HRESULT result = Draw({primitiveType, primitiveCount, {}, stream}, layout);
    ForgetStream();
    return result;
}

/// Leaves stream 0 and the indices empty afterwards, as published. The indices must lie in the
/// range that the caller states: the data has no known size to check against.
HRESULT HeadlessDevice::DrawIndexedPrimitiveUP(D3DPRIMITIVETYPE primitiveType, UINT minVertexIndex,
                                               UINT vertexCount, UINT primitiveCount,
                                               const void* indexData, D3DFORMAT indexFormat,
                                               const void* data, UINT stride)
{
    VertexLayout layout;
    if (!state.inScene || !IsPrimitive(primitiveType) || !indexData || !data || stride == 0 ||
        (indexFormat != D3DFMT_INDEX16 && indexFormat != D3DFMT_INDEX32) ||
        minVertexIndex > 0xFFFFFFFF - vertexCount || !MakeVertexLayout(state.fvf, layout))
        return D3DERR_INVALIDCALL;
    if (primitiveCount == 0)
        return D3D_OK;
    const IndexSource indices = {static_cast<const uint8_t*>(indexData), IndexBytes(indexFormat), 0,
                                 0};
    const VertexStream stream = {static_cast<const uint8_t*>(data), stride,
                                 minVertexIndex + vertexCount};
    const HRESULT result = Draw({primitiveType, primitiveCount, indices, stream}, layout);
    ForgetStream();
    state.indices.Set(nullptr);
    return result;
}

} // namespace headless

bool TakeCutDraw()
{
    return std::exchange(headless::gHasCutDraw, false);
}

bool TakeCutFrame()
{
    return std::exchange(headless::gHasCutFrame, false);
}
