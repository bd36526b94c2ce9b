// Any states, matrices, lights and vertices: a draw may be refused, but must not harm the process.

#include "platform/headless/d3d9/PrimitiveAssembly.h"
#include "platform/headless/d3d9/VertexFormat.h"
#include "tests/support/HiddenWindow.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <d3d9.h>
#include <vector>

using namespace headless;

namespace {

constexpr UINT kSide = 32;
constexpr size_t kMaxSteps = 200; // keeps an input below a second

/// Returns the bytes of the input; zeros after its end.
class Input {
public:
    Input(const uint8_t* bytes, size_t count) : next(bytes), left(count) {}

    template <typename T>
    T Take()
    {
        T value = {};
        const size_t count = std::min(left, sizeof value);
        std::memcpy(&value, next, count);
        next += count;
        left -= count;
        return value;
    }

    bool IsEmpty() const { return left == 0; }

private:
    const uint8_t* next;
    size_t left;
};

/// One device for all inputs, reset to its initial state for each.
class Target {
public:
    Target()
    {
        parameters.BackBufferWidth = parameters.BackBufferHeight = kSide;
        parameters.BackBufferFormat = D3DFMT_A8R8G8B8;
        parameters.BackBufferCount = 1;
        parameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
        parameters.hDeviceWindow = window.Handle();
        parameters.Windowed = TRUE;
        parameters.EnableAutoDepthStencil = TRUE;
        parameters.AutoDepthStencilFormat = D3DFMT_D24S8;
        IDirect3D9* d3d = Direct3DCreate9(D3D_SDK_VERSION);
        if (FAILED(d3d->CreateDevice(0, D3DDEVTYPE_HAL, parameters.hDeviceWindow,
                                     D3DCREATE_SOFTWARE_VERTEXPROCESSING, &parameters, &device)))
            std::abort();
        const D3DFORMAT formats[] = {D3DFMT_A8R8G8B8, D3DFMT_X8R8G8B8, D3DFMT_R5G6B5,
                                     D3DFMT_V8U8,     D3DFMT_DXT5,     D3DFMT_A8L8};
        for (UINT i = 0; i < kTextures; ++i)
            device->CreateTexture(4u << i, i == 3 ? 7 : 16, 0, 0, formats[i], D3DPOOL_MANAGED,
                                  &textures[i], nullptr);
    }

    void Begin()
    {
        if (FAILED(device->Reset(&parameters)))
            std::abort();
        device->BeginScene();
    }

    IDirect3DBaseTexture9* Texture(unsigned choice) const
    {
        return choice % (kTextures + 1) == kTextures ? nullptr : textures[choice % kTextures];
    }

    IDirect3DDevice9* device = nullptr;

private:
    static constexpr UINT kTextures = 6;
    HiddenWindow window{kSide, kSide};
    D3DPRESENT_PARAMETERS parameters = {};
    IDirect3DTexture9* textures[kTextures] = {};
};

void SetMatrix(Input& input, IDirect3DDevice9* device)
{
    constexpr DWORD kTypes[] = {D3DTS_VIEW, D3DTS_PROJECTION, D3DTS_TEXTURE0, D3DTS_TEXTURE1, 256,
                                257};
    const auto type = static_cast<D3DTRANSFORMSTATETYPE>(kTypes[input.Take<uint8_t>() % 6]);
    const auto matrix = input.Take<D3DMATRIX>();
    device->SetTransform(type, &matrix);
}

void SetLight(Input& input, IDirect3DDevice9* device)
{
    const DWORD index = input.Take<uint8_t>() % 4u;
    auto light = input.Take<D3DLIGHT9>();
    light.Type = static_cast<D3DLIGHTTYPE>(input.Take<uint8_t>() % 5);
    device->SetLight(index, &light);
    device->LightEnable(index, TRUE);
}

void SetArea(Input& input, IDirect3DDevice9* device)
{
    D3DVIEWPORT9 viewport = {input.Take<uint8_t>(), input.Take<uint8_t>(), input.Take<uint8_t>(),
                             input.Take<uint8_t>(), input.Take<float>(),   input.Take<float>()};
    device->SetViewport(&viewport);
    const auto scissor = input.Take<RECT>();
    device->SetScissorRect(&scissor);
    float plane[4] = {input.Take<float>(), input.Take<float>(), input.Take<float>(),
                      input.Take<float>()};
    device->SetClipPlane(input.Take<uint8_t>() % 6u, plane);
}

void Draw(Input& input, IDirect3DDevice9* device)
{
    const auto fvf = static_cast<DWORD>(input.Take<uint32_t>());
    const auto type = static_cast<D3DPRIMITIVETYPE>(input.Take<uint8_t>() % 8);
    const UINT count = input.Take<uint8_t>() % 16u;
    const uint64_t vertices = VertexCountOf(type, count);
    const UINT stride = std::max(VertexSize(fvf), 1u);
    std::vector<uint8_t> bytes(static_cast<size_t>(vertices) * stride + 1);
    for (uint8_t& byte : bytes)
        byte = input.Take<uint8_t>();
    device->SetFVF(fvf);
    device->DrawPrimitiveUP(type, count, bytes.data(), stride);
    device->DrawIndexedPrimitiveUP(type, 0, static_cast<UINT>(vertices), std::min(count, 2u),
                                   bytes.data(), D3DFMT_INDEX16, bytes.data(), stride);
}

void Step(Input& input, const Target& target)
{
    IDirect3DDevice9* device = target.device;
    switch (input.Take<uint8_t>() % 9) {
    case 0:
        // Only small values have a meaning.
        device->SetRenderState(static_cast<D3DRENDERSTATETYPE>(input.Take<uint8_t>()),
                               input.Take<uint8_t>());
        break;
    case 1:
        device->SetRenderState(static_cast<D3DRENDERSTATETYPE>(input.Take<uint8_t>()),
                               input.Take<uint32_t>());
        break;
    case 2:
        device->SetTextureStageState(
            input.Take<uint8_t>() % 3u,
            static_cast<D3DTEXTURESTAGESTATETYPE>(input.Take<uint8_t>() % 33),
            input.Take<uint32_t>() & 0x4013F);
        break;
    case 3:
        device->SetSamplerState(input.Take<uint8_t>() % 3u,
                                static_cast<D3DSAMPLERSTATETYPE>(input.Take<uint8_t>() % 14),
                                input.Take<uint8_t>() % 7u);
        break;
    case 4:
        SetMatrix(input, device);
        break;
    case 5:
        SetLight(input, device);
        break;
    case 6:
        device->SetTexture(input.Take<uint8_t>() % 3u, target.Texture(input.Take<uint8_t>()));
        break;
    case 7:
        SetArea(input, device);
        break;
    default:
        Draw(input, device);
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Target target;
    target.Begin();
    Input input(data, size);
    for (size_t step = 0; step < kMaxSteps && !input.IsEmpty(); ++step)
        Step(input, target);
    target.device->EndScene();
    return 0;
}
