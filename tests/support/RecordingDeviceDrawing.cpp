#include "tests/support/CallText.h"
#include "tests/support/D3DNames.h"
#include "tests/support/RecordingDevice.h"

// Scenes, draw calls and their inputs: streams, declarations, programs.

HRESULT STDMETHODCALLTYPE RecordingDevice::BeginScene()
{
    return Forward("BeginScene", {}, [&] { return device->BeginScene(); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::EndScene()
{
    return Forward("EndScene", {}, [&] { return device->EndScene(); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::Clear(DWORD rectCount, const D3DRECT* rects, DWORD flags,
                                                 D3DCOLOR color, float z, DWORD stencil)
{
    return Forward("Clear",
                   {ClearRectsText(rectCount, rects), ClearFlags(flags), ColorText(color),
                    FloatText(z), std::to_string(stencil)},
                   [&] { return device->Clear(rectCount, rects, flags, color, z, stencil); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::DrawPrimitive(D3DPRIMITIVETYPE primitiveType,
                                                         UINT startVertex, UINT primitiveCount)
{
    return Forward(
        "DrawPrimitive",
        {PrimitiveName(primitiveType), std::to_string(startVertex), std::to_string(primitiveCount)},
        [&] { return device->DrawPrimitive(primitiveType, startVertex, primitiveCount); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::DrawIndexedPrimitive(D3DPRIMITIVETYPE type,
                                                                INT baseVertexIndex,
                                                                UINT minVertexIndex,
                                                                UINT numVertices, UINT startIndex,
                                                                UINT primitiveCount)
{
    return Forward("DrawIndexedPrimitive",
                   {PrimitiveName(type), std::to_string(baseVertexIndex),
                    std::to_string(minVertexIndex), std::to_string(numVertices),
                    std::to_string(startIndex), std::to_string(primitiveCount)},
                   [&] {
                       return device->DrawIndexedPrimitive(type, baseVertexIndex, minVertexIndex,
                                                           numVertices, startIndex, primitiveCount);
                   });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::DrawPrimitiveUP(D3DPRIMITIVETYPE primitiveType,
                                                           UINT primitiveCount, const void* data,
                                                           UINT stride)
{
    return Forward(
        "DrawPrimitiveUP",
        {PrimitiveName(primitiveType), std::to_string(primitiveCount), DataText(data),
         std::to_string(stride)},
        [&] { return device->DrawPrimitiveUP(primitiveType, primitiveCount, data, stride); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::DrawIndexedPrimitiveUP(
    D3DPRIMITIVETYPE primitiveType, UINT minVertexIndex, UINT vertexCount, UINT primitiveCount,
    const void* indexData, D3DFORMAT indexFormat, const void* data, UINT stride)
{
    return Forward("DrawIndexedPrimitiveUP",
                   {PrimitiveName(primitiveType), std::to_string(minVertexIndex),
                    std::to_string(vertexCount), std::to_string(primitiveCount),
                    DataText(indexData), FormatName(indexFormat), DataText(data),
                    std::to_string(stride)},
                   [&] {
                       return device->DrawIndexedPrimitiveUP(primitiveType, minVertexIndex,
                                                             vertexCount, primitiveCount, indexData,
                                                             indexFormat, data, stride);
                   });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::ProcessVertices(UINT srcStartIndex, UINT destIndex,
                                                           UINT vertexCount,
                                                           IDirect3DVertexBuffer9* destBuffer,
                                                           IDirect3DVertexDeclaration9* declaration,
                                                           DWORD flags)
{
    return Forward("ProcessVertices",
                   {std::to_string(srcStartIndex), std::to_string(destIndex),
                    std::to_string(vertexCount), calls->NameOfObject("vertexbuffer", destBuffer),
                    calls->NameOfObject("declaration", declaration), std::to_string(flags)},
                   [&] {
                       return device->ProcessVertices(srcStartIndex, destIndex, vertexCount,
                                                      destBuffer, declaration, flags);
                   });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateVertexDeclaration(
    const D3DVERTEXELEMENT9* elements, IDirect3DVertexDeclaration9** declarationOut)
{
    return Create("CreateVertexDeclaration", {DataText(elements)}, "declaration", declarationOut,
                  [&] { return device->CreateVertexDeclaration(elements, declarationOut); });
}

HRESULT STDMETHODCALLTYPE
RecordingDevice::SetVertexDeclaration(IDirect3DVertexDeclaration9* declaration)
{
    return Forward("SetVertexDeclaration", {calls->NameOfObject("declaration", declaration)},
                   [&] { return device->SetVertexDeclaration(declaration); });
}

HRESULT STDMETHODCALLTYPE
RecordingDevice::GetVertexDeclaration(IDirect3DVertexDeclaration9** declarationOut)
{
    return Give("GetVertexDeclaration", {}, "declaration", declarationOut,
                [&] { return device->GetVertexDeclaration(declarationOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetFVF(DWORD fvf)
{
    return Forward("SetFVF", {FvfFlags(fvf)}, [&] { return device->SetFVF(fvf); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetFVF(DWORD* fvfOut)
{
    return Forward("GetFVF", {}, [&] { return device->GetFVF(fvfOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateVertexShader(const DWORD* byteCode,
                                                              IDirect3DVertexShader9** shaderOut)
{
    return Create("CreateVertexShader", {DataText(byteCode)}, "vertexshader", shaderOut,
                  [&] { return device->CreateVertexShader(byteCode, shaderOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetVertexShader(IDirect3DVertexShader9* shader)
{
    return Forward("SetVertexShader", {calls->NameOfObject("vertexshader", shader)},
                   [&] { return device->SetVertexShader(shader); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetVertexShader(IDirect3DVertexShader9** shaderOut)
{
    return Give("GetVertexShader", {}, "vertexshader", shaderOut,
                [&] { return device->GetVertexShader(shaderOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetVertexShaderConstantF(UINT startRegister,
                                                                    const float* data, UINT count)
{
    return Forward(
        "SetVertexShaderConstantF",
        {std::to_string(startRegister), FloatsText(data, count * 4), std::to_string(count)},
        [&] { return device->SetVertexShaderConstantF(startRegister, data, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetVertexShaderConstantF(UINT startRegister,
                                                                    float* constantDataOut,
                                                                    UINT count)
{
    return Forward(
        "GetVertexShaderConstantF", {std::to_string(startRegister), std::to_string(count)},
        [&] { return device->GetVertexShaderConstantF(startRegister, constantDataOut, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetVertexShaderConstantI(UINT startRegister,
                                                                    const int* data, UINT count)
{
    return Forward(
        "SetVertexShaderConstantI",
        {std::to_string(startRegister), IntsText(data, count * 4), std::to_string(count)},
        [&] { return device->SetVertexShaderConstantI(startRegister, data, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetVertexShaderConstantI(UINT startRegister,
                                                                    int* constantDataOut,
                                                                    UINT count)
{
    return Forward(
        "GetVertexShaderConstantI", {std::to_string(startRegister), std::to_string(count)},
        [&] { return device->GetVertexShaderConstantI(startRegister, constantDataOut, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetVertexShaderConstantB(UINT startRegister,
                                                                    const BOOL* data, UINT count)
{
    return Forward("SetVertexShaderConstantB",
                   {std::to_string(startRegister), IntsText(data, count), std::to_string(count)},
                   [&] { return device->SetVertexShaderConstantB(startRegister, data, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetVertexShaderConstantB(UINT startRegister,
                                                                    BOOL* constantDataOut,
                                                                    UINT count)
{
    return Forward(
        "GetVertexShaderConstantB", {std::to_string(startRegister), std::to_string(count)},
        [&] { return device->GetVertexShaderConstantB(startRegister, constantDataOut, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetStreamSource(UINT streamNumber,
                                                           IDirect3DVertexBuffer9* streamData,
                                                           UINT offsetBytes, UINT stride)
{
    return Forward(
        "SetStreamSource",
        {std::to_string(streamNumber), calls->NameOfObject("vertexbuffer", streamData),
         std::to_string(offsetBytes), std::to_string(stride)},
        [&] { return device->SetStreamSource(streamNumber, streamData, offsetBytes, stride); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetStreamSource(UINT streamNumber,
                                                           IDirect3DVertexBuffer9** streamDataOut,
                                                           UINT* offsetBytesOut, UINT* strideOut)
{
    return Give(
        "GetStreamSource", {std::to_string(streamNumber)}, "vertexbuffer", streamDataOut, [&] {
            return device->GetStreamSource(streamNumber, streamDataOut, offsetBytesOut, strideOut);
        });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetStreamSourceFreq(UINT streamNumber, UINT divider)
{
    return Forward("SetStreamSourceFreq", {std::to_string(streamNumber), std::to_string(divider)},
                   [&] { return device->SetStreamSourceFreq(streamNumber, divider); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetStreamSourceFreq(UINT streamNumber, UINT* dividerOut)
{
    return Forward("GetStreamSourceFreq", {std::to_string(streamNumber)},
                   [&] { return device->GetStreamSourceFreq(streamNumber, dividerOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetIndices(IDirect3DIndexBuffer9* indexData)
{
    return Forward("SetIndices", {calls->NameOfObject("indexbuffer", indexData)},
                   [&] { return device->SetIndices(indexData); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetIndices(IDirect3DIndexBuffer9** indexDataOut)
{
    return Give("GetIndices", {}, "indexbuffer", indexDataOut,
                [&] { return device->GetIndices(indexDataOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreatePixelShader(const DWORD* byteCode,
                                                             IDirect3DPixelShader9** shaderOut)
{
    return Create("CreatePixelShader", {DataText(byteCode)}, "pixelshader", shaderOut,
                  [&] { return device->CreatePixelShader(byteCode, shaderOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetPixelShader(IDirect3DPixelShader9* shader)
{
    return Forward("SetPixelShader", {calls->NameOfObject("pixelshader", shader)},
                   [&] { return device->SetPixelShader(shader); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetPixelShader(IDirect3DPixelShader9** shaderOut)
{
    return Give("GetPixelShader", {}, "pixelshader", shaderOut,
                [&] { return device->GetPixelShader(shaderOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetPixelShaderConstantF(UINT startRegister,
                                                                   const float* data, UINT count)
{
    return Forward(
        "SetPixelShaderConstantF",
        {std::to_string(startRegister), FloatsText(data, count * 4), std::to_string(count)},
        [&] { return device->SetPixelShaderConstantF(startRegister, data, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetPixelShaderConstantF(UINT startRegister,
                                                                   float* constantDataOut,
                                                                   UINT count)
{
    return Forward(
        "GetPixelShaderConstantF", {std::to_string(startRegister), std::to_string(count)},
        [&] { return device->GetPixelShaderConstantF(startRegister, constantDataOut, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetPixelShaderConstantI(UINT startRegister,
                                                                   const int* data, UINT count)
{
    return Forward(
        "SetPixelShaderConstantI",
        {std::to_string(startRegister), IntsText(data, count * 4), std::to_string(count)},
        [&] { return device->SetPixelShaderConstantI(startRegister, data, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetPixelShaderConstantI(UINT startRegister,
                                                                   int* constantDataOut, UINT count)
{
    return Forward(
        "GetPixelShaderConstantI", {std::to_string(startRegister), std::to_string(count)},
        [&] { return device->GetPixelShaderConstantI(startRegister, constantDataOut, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetPixelShaderConstantB(UINT startRegister,
                                                                   const BOOL* data, UINT count)
{
    return Forward("SetPixelShaderConstantB",
                   {std::to_string(startRegister), IntsText(data, count), std::to_string(count)},
                   [&] { return device->SetPixelShaderConstantB(startRegister, data, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetPixelShaderConstantB(UINT startRegister,
                                                                   BOOL* constantDataOut,
                                                                   UINT count)
{
    return Forward(
        "GetPixelShaderConstantB", {std::to_string(startRegister), std::to_string(count)},
        [&] { return device->GetPixelShaderConstantB(startRegister, constantDataOut, count); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::DrawRectPatch(UINT handle, const float* segmentCount,
                                                         const D3DRECTPATCH_INFO* patchInfo)
{
    return Forward("DrawRectPatch",
                   {std::to_string(handle), FloatsText(segmentCount, 4), DataText(patchInfo)},
                   [&] { return device->DrawRectPatch(handle, segmentCount, patchInfo); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::DrawTriPatch(UINT handle, const float* segmentCount,
                                                        const D3DTRIPATCH_INFO* patchInfo)
{
    return Forward("DrawTriPatch",
                   {std::to_string(handle), FloatsText(segmentCount, 3), DataText(patchInfo)},
                   [&] { return device->DrawTriPatch(handle, segmentCount, patchInfo); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::DeletePatch(UINT handle)
{
    return Forward("DeletePatch", {std::to_string(handle)},
                   [&] { return device->DeletePatch(handle); });
}
