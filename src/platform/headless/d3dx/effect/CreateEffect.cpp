#include <d3dx9.h>

#include <new>
#include <string>

#include "platform/headless/d3d9/CallControl.h"
#include "platform/headless/d3dx/effect/FxEffect.h"
#include "platform/headless/d3dx/effect/FxParser.h"
#include "platform/headless/d3dx/effect/FxPreprocessor.h"
#include "platform/headless/d3dx/effect/FxTextBuffer.h"

namespace {

/// How a text comes to be: what the two ways to make an effect have in common.
struct Request {
    IDirect3DDevice9* device;
    const D3DXMACRO* defines;
    ID3DXInclude* include;
    ID3DXEffectPool* pool;
    ID3DXEffect** effectOut;
    ID3DXBuffer** errorsOut;
};

bool Prepare(const Request& request)
{
    if (request.errorsOut)
        *request.errorsOut = nullptr;
    if (request.effectOut)
        *request.effectOut = nullptr;
    return request.device && request.effectOut;
}

/// Compiled effects begin with this word, least byte first.
constexpr std::string_view kCompiledMark("\x01\x09\xFF\xFE", 4);

bool Read(const Request& request, const std::string& path, std::string_view bytes, bool readsFiles,
          FxDiagnostics& diagnostics, FxModel& model)
{
    if (bytes.starts_with(kCompiledMark))
        return diagnostics.Fail({diagnostics.AddFile(path), 1, 1}, FxError::CompiledEffect,
                                "compiled effects are not read on this host, only their text");
    FxSources sources(request.include, readsFiles);
    FxPreprocessor preprocessor(sources, diagnostics);
    std::vector<FxToken> words;
    if (!preprocessor.Define(request.defines) || !preprocessor.Run(path, bytes, words))
        return false;
    return FxParser(std::move(words), diagnostics, static_cast<EffectPool*>(request.pool), model)
        .Run();
}

HRESULT Create(const Request& request, const std::string& path, std::string_view bytes,
               bool readsFiles)
{
    FxDiagnostics diagnostics;
    auto model = std::make_unique<FxModel>();
    if (!Read(request, path, bytes, readsFiles, diagnostics, *model)) {
        if (request.errorsOut)
            *request.errorsOut = FxMakeTextBuffer(diagnostics.Text());
        return D3DXERR_INVALIDDATA;
    }
    *request.effectOut = new (std::nothrow)
        FxEffect(*request.device, static_cast<EffectPool*>(request.pool), std::move(model));
    return *request.effectOut ? D3D_OK : E_OUTOFMEMORY;
}

} // namespace

HRESULT WINAPI D3DXCreateEffect(IDirect3DDevice9* device, const void* data, UINT sizeBytes,
                                const D3DXMACRO* defines, ID3DXInclude* include, DWORD,
                                ID3DXEffectPool* pool, ID3DXEffect** effectOut,
                                ID3DXBuffer** errorsOut)
{
    if (const HRESULT ordered = OrderedResult("D3DXCreateEffect"); FAILED(ordered))
        return ordered;
    const Request request = {device, defines, include, pool, effectOut, errorsOut};
    if (!Prepare(request) || !data)
        return D3DERR_INVALIDCALL;
    return Create(request, "memory", {static_cast<const char*>(data), sizeBytes}, false);
}

HRESULT WINAPI D3DXCreateEffectFromFileA(IDirect3DDevice9* device, LPCSTR path,
                                         const D3DXMACRO* defines, ID3DXInclude* include, DWORD,
                                         ID3DXEffectPool* pool, ID3DXEffect** effectOut,
                                         ID3DXBuffer** errorsOut)
{
    if (const HRESULT ordered = OrderedResult("D3DXCreateEffectFromFileA"); FAILED(ordered))
        return ordered;
    const Request request = {device, defines, include, pool, effectOut, errorsOut};
    if (!Prepare(request) || !path)
        return D3DERR_INVALIDCALL;
    std::string bytes;
    if (const HRESULT result = FxSources::ReadFile(path, bytes); FAILED(result))
        return result;
    return Create(request, path, bytes, true);
}
