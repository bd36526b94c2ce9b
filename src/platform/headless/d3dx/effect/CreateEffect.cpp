#include <d3dx9.h>

#include <algorithm>
#include <new>
#include <string>

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3dx/effect/FxCompiledReader.h"
#include "platform/headless/d3dx/effect/FxEffect.h"
#include "platform/headless/d3dx/effect/FxParser.h"
#include "platform/headless/d3dx/effect/FxPreprocessor.h"
#include "platform/headless/d3dx/effect/FxTextBuffer.h"

namespace headless::fx {

namespace {

/// The arguments common to the two functions that create an effect.
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

/// Whether the bytes are no text, but a compiled effect or something else. Texts contain no control
/// characters except white space and the end mark of old editors.
bool IsBinary(std::string_view bytes)
{
    const auto isStrange = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 && !(byte >= '\t' && byte <= '\r') && byte != 0x1A;
    };
    return std::any_of(bytes.begin(), bytes.end(), isStrange);
}

bool Read(const Request& request, const std::string& path, std::string_view bytes, bool readsFiles,
          FxDiagnostics& diagnostics, FxModel& model)
{
    if (IsBinary(bytes)) {
        const FxPlace start = {diagnostics.AddFile(path), 1, 1};
        if (bytes.size() > kFxMaxCompiledBytes) {
            model.lack =
                diagnostics.PlaceText(start) + ": the compiled effect is longer than 16 MiB";
            return true;
        }
        return FxCompiledReader(bytes, start, diagnostics, static_cast<EffectPool*>(request.pool),
                                model)
            .Run();
    }
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
    if (!model->lack.empty())
        LogLack(model->lack);
    *request.effectOut = new (std::nothrow)
        FxEffect(*request.device, static_cast<EffectPool*>(request.pool), std::move(model));
    return *request.effectOut ? D3D_OK : E_OUTOFMEMORY;
}

} // namespace

} // namespace headless::fx

using namespace headless;
using namespace headless::fx;

HRESULT WINAPI D3DXCreateEffect(IDirect3DDevice9* device, const void* data, UINT sizeBytes,
                                const D3DXMACRO* defines, ID3DXInclude* include, DWORD,
                                ID3DXEffectPool* pool, ID3DXEffect** effectOut,
                                ID3DXBuffer** errorsOut)
{
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
    const Request request = {device, defines, include, pool, effectOut, errorsOut};
    if (!Prepare(request) || !path)
        return D3DERR_INVALIDCALL;
    std::string bytes;
    const HRESULT result = FxSources::ReadFile(path, bytes);
    if (FAILED(result) && !FxIsCompiled(bytes)) // one that is too long costs only itself
        return result;
    return Create(request, path, bytes, true);
}
