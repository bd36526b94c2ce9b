#pragma once

#include "platform/headless/d3d9/Resource.h"
#include "platform/headless/shader/Program.h"

#include <string>
#include <vector>

namespace headless {

/// What vertex and pixel shaders share: the words they were made from and the program that runs them.
struct ShaderContent {
    std::vector<DWORD> words;
    shader::Program program;

    /// Copies and checks the stream. False with the reason if it is refused.
    bool Read(const DWORD* code, bool isPixel, std::string& reasonOut);
    HRESULT GetWords(void* codeOut, UINT* sizeInOut) const;
};

/// A shader of a device.
template <typename Interface, const IID& Id>
class HeadlessShader final : public ComIdentity<Interface, Id>, public ResourceLife {
public:
    explicit HeadlessShader(ResourceOwner& shaderOwner)
        : ResourceLife(shaderOwner, ObjectKind::Shader, D3DPOOL_MANAGED)
    {}

    ULONG STDMETHODCALLTYPE AddRef() override { return AddReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return RemoveReference(); }
    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) override
    {
        return DeviceOfResource(Owner(), deviceOut);
    }
    HRESULT STDMETHODCALLTYPE GetFunction(void* codeOut, UINT* sizeInOut) override
    {
        return content.GetWords(codeOut, sizeInOut);
    }

    shader::Program& Content() { return content.program; }
    ShaderContent& Parts() { return content; }

private:
    ShaderContent content;
};

using HeadlessVertexShader = HeadlessShader<IDirect3DVertexShader9, IID_IDirect3DVertexShader9>;
using HeadlessPixelShader = HeadlessShader<IDirect3DPixelShader9, IID_IDirect3DPixelShader9>;

} // namespace headless
