#include "tests/support/CallText.h"
#include "tests/support/D3DNames.h"
#include "tests/support/RecordingDevice.h"

// States of the pipeline before the draw calls.

HRESULT STDMETHODCALLTYPE RecordingDevice::SetTransform(D3DTRANSFORMSTATETYPE state,
                                                        const D3DMATRIX* matrix)
{
    return Forward("SetTransform", {TransformName(state), MatrixText(matrix)},
                   [&] { return device->SetTransform(state, matrix); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetTransform(D3DTRANSFORMSTATETYPE state,
                                                        D3DMATRIX* matrixOut)
{
    return Forward("GetTransform", {TransformName(state)},
                   [&] { return device->GetTransform(state, matrixOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::MultiplyTransform(D3DTRANSFORMSTATETYPE state,
                                                             const D3DMATRIX* matrix)
{
    return Forward("MultiplyTransform", {TransformName(state), MatrixText(matrix)},
                   [&] { return device->MultiplyTransform(state, matrix); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetViewport(const D3DVIEWPORT9* viewport)
{
    return Forward("SetViewport", {ViewportText(viewport)},
                   [&] { return device->SetViewport(viewport); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetViewport(D3DVIEWPORT9* viewportOut)
{
    return Forward("GetViewport", {}, [&] { return device->GetViewport(viewportOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetMaterial(const D3DMATERIAL9* material)
{
    return Forward("SetMaterial", {MaterialText(material)},
                   [&] { return device->SetMaterial(material); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetMaterial(D3DMATERIAL9* materialOut)
{
    return Forward("GetMaterial", {}, [&] { return device->GetMaterial(materialOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetLight(DWORD index, const D3DLIGHT9* light)
{
    return Forward("SetLight", {std::to_string(index), LightText(light)},
                   [&] { return device->SetLight(index, light); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetLight(DWORD index, D3DLIGHT9* lightOut)
{
    return Forward("GetLight", {std::to_string(index)},
                   [&] { return device->GetLight(index, lightOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::LightEnable(DWORD index, BOOL enable)
{
    return Forward("LightEnable", {std::to_string(index), BoolText(enable)},
                   [&] { return device->LightEnable(index, enable); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetLightEnable(DWORD index, BOOL* enableOut)
{
    return Forward("GetLightEnable", {std::to_string(index)},
                   [&] { return device->GetLightEnable(index, enableOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetClipPlane(DWORD index, const float* plane)
{
    return Forward("SetClipPlane", {std::to_string(index), FloatsText(plane, 4)},
                   [&] { return device->SetClipPlane(index, plane); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetClipPlane(DWORD index, float* planeOut)
{
    return Forward("GetClipPlane", {std::to_string(index)},
                   [&] { return device->GetClipPlane(index, planeOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetRenderState(D3DRENDERSTATETYPE state, DWORD value)
{
    return Forward("SetRenderState", {RenderStateName(state), RenderStateValue(state, value)},
                   [&] { return device->SetRenderState(state, value); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetRenderState(D3DRENDERSTATETYPE state, DWORD* valueOut)
{
    return Forward("GetRenderState", {RenderStateName(state)},
                   [&] { return device->GetRenderState(state, valueOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateStateBlock(D3DSTATEBLOCKTYPE type,
                                                            IDirect3DStateBlock9** blockOut)
{
    return Create("CreateStateBlock", {StateBlockTypeName(type)}, "stateblock", blockOut,
                  [&] { return device->CreateStateBlock(type, blockOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::BeginStateBlock()
{
    return Forward("BeginStateBlock", {}, [&] { return device->BeginStateBlock(); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::EndStateBlock(IDirect3DStateBlock9** blockOut)
{
    return Create("EndStateBlock", {}, "stateblock", blockOut,
                  [&] { return device->EndStateBlock(blockOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetClipStatus(const D3DCLIPSTATUS9* clipStatus)
{
    return Forward("SetClipStatus", {DataText(clipStatus)},
                   [&] { return device->SetClipStatus(clipStatus); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetClipStatus(D3DCLIPSTATUS9* clipStatusOut)
{
    return Forward("GetClipStatus", {}, [&] { return device->GetClipStatus(clipStatusOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetTexture(DWORD stage,
                                                      IDirect3DBaseTexture9** textureOut)
{
    return Give("GetTexture", {std::to_string(stage)}, "texture", textureOut,
                [&] { return device->GetTexture(stage, textureOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetTexture(DWORD stage, IDirect3DBaseTexture9* texture)
{
    return Forward("SetTexture", {std::to_string(stage), calls->NameOfObject("texture", texture)},
                   [&] { return device->SetTexture(stage, texture); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetTextureStageState(DWORD stage,
                                                                D3DTEXTURESTAGESTATETYPE type,
                                                                DWORD* valueOut)
{
    return Forward("GetTextureStageState", {std::to_string(stage), TextureStageStateName(type)},
                   [&] { return device->GetTextureStageState(stage, type, valueOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetTextureStageState(DWORD stage,
                                                                D3DTEXTURESTAGESTATETYPE type,
                                                                DWORD value)
{
    return Forward(
        "SetTextureStageState",
        {std::to_string(stage), TextureStageStateName(type), TextureStageStateValue(type, value)},
        [&] { return device->SetTextureStageState(stage, type, value); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type,
                                                           DWORD* valueOut)
{
    return Forward("GetSamplerState", {std::to_string(sampler), SamplerStateName(type)},
                   [&] { return device->GetSamplerState(sampler, type, valueOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type,
                                                           DWORD value)
{
    return Forward(
        "SetSamplerState",
        {std::to_string(sampler), SamplerStateName(type), SamplerStateValue(type, value)},
        [&] { return device->SetSamplerState(sampler, type, value); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::ValidateDevice(DWORD* numPassesOut)
{
    return Forward("ValidateDevice", {}, [&] { return device->ValidateDevice(numPassesOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetPaletteEntries(UINT palette,
                                                             const PALETTEENTRY* entries)
{
    return Forward("SetPaletteEntries", {std::to_string(palette), DataText(entries)},
                   [&] { return device->SetPaletteEntries(palette, entries); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetPaletteEntries(UINT palette, PALETTEENTRY* entriesOut)
{
    return Forward("GetPaletteEntries", {std::to_string(palette)},
                   [&] { return device->GetPaletteEntries(palette, entriesOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetCurrentTexturePalette(UINT palette)
{
    return Forward("SetCurrentTexturePalette", {std::to_string(palette)},
                   [&] { return device->SetCurrentTexturePalette(palette); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetCurrentTexturePalette(UINT* paletteOut)
{
    return Forward("GetCurrentTexturePalette", {},
                   [&] { return device->GetCurrentTexturePalette(paletteOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetScissorRect(const RECT* rect)
{
    return Forward("SetScissorRect", {RectText(rect)},
                   [&] { return device->SetScissorRect(rect); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetScissorRect(RECT* rectOut)
{
    return Forward("GetScissorRect", {}, [&] { return device->GetScissorRect(rectOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetSoftwareVertexProcessing(BOOL software)
{
    return Forward("SetSoftwareVertexProcessing", {BoolText(software)},
                   [&] { return device->SetSoftwareVertexProcessing(software); });
}

BOOL STDMETHODCALLTYPE RecordingDevice::GetSoftwareVertexProcessing()
{
    calls->Note("GetSoftwareVertexProcessing", {});
    return device->GetSoftwareVertexProcessing();
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetNPatchMode(float segments)
{
    return Forward("SetNPatchMode", {FloatText(segments)},
                   [&] { return device->SetNPatchMode(segments); });
}

float STDMETHODCALLTYPE RecordingDevice::GetNPatchMode()
{
    calls->Note("GetNPatchMode", {});
    return device->GetNPatchMode();
}
