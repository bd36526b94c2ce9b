#include "tests/platform/d3dx/ImageDevice.h"

#include <cstring>

void ImageDevice::SetUp()
{
    d3d.reset(Direct3DCreate9(D3D_SDK_VERSION));
    ASSERT_TRUE(d3d);
    D3DPRESENT_PARAMETERS parameters = Parameters();
    ASSERT_EQ(d3d->CreateDevice(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, window.Handle(),
                                D3DCREATE_SOFTWARE_VERTEXPROCESSING, &parameters, &device),
              D3D_OK);
}

D3DPRESENT_PARAMETERS ImageDevice::Parameters() const
{
    D3DPRESENT_PARAMETERS parameters = {};
    parameters.BackBufferWidth = 64;
    parameters.BackBufferHeight = 64;
    parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
    parameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
    parameters.hDeviceWindow = window.Handle();
    parameters.Windowed = TRUE;
    parameters.EnableAutoDepthStencil = TRUE;
    parameters.AutoDepthStencilFormat = D3DFMT_D16;
    return parameters;
}

HRESULT ImageDevice::Reset()
{
    D3DPRESENT_PARAMETERS parameters = Parameters();
    return device->Reset(&parameters);
}

void ImageDevice::TearDown()
{
    if (device) {
        EXPECT_EQ(device->Release(), 0u) << "the test left an object alive";
    }
    d3d.reset();
}

TextureHandle ImageDevice::Load(const std::string& file, const LoadRequest& request)
{
    IDirect3DTexture9* texture = nullptr;
    result = D3DXCreateTextureFromFileInMemoryEx(
        device, file.data(), static_cast<UINT>(file.size()), request.width, request.height,
        request.levels, request.usage, request.format, request.pool, request.filter,
        request.mipFilter, request.colorKey, nullptr, nullptr, &texture);
    return TextureHandle(SUCCEEDED(result) ? texture : nullptr);
}

std::vector<uint32_t> ImageDevice::LoadArgb(const std::string& file, LoadRequest request)
{
    request.format = D3DFMT_A8R8G8B8;
    const TextureHandle texture = Load(file, request);
    EXPECT_EQ(result, D3D_OK);
    return texture ? LevelPixels(*texture) : std::vector<uint32_t>();
}

D3DSURFACE_DESC DescOf(IDirect3DTexture9& texture, UINT level)
{
    D3DSURFACE_DESC desc = {};
    EXPECT_EQ(texture.GetLevelDesc(level, &desc), D3D_OK);
    return desc;
}

std::string LevelBytes(IDirect3DTexture9& texture, UINT level, size_t rowBytes, UINT rows)
{
    D3DLOCKED_RECT locked = {};
    EXPECT_EQ(texture.LockRect(level, &locked, nullptr, D3DLOCK_READONLY), D3D_OK);
    std::string bytes;
    for (UINT y = 0; locked.pBits && y < rows; ++y)
        bytes.append(static_cast<const char*>(locked.pBits) + y * static_cast<UINT>(locked.Pitch),
                     rowBytes);
    texture.UnlockRect(level);
    return bytes;
}

std::vector<uint32_t> LevelPixels(IDirect3DTexture9& texture, UINT level)
{
    const D3DSURFACE_DESC desc = DescOf(texture, level);
    const std::string bytes = LevelBytes(texture, level, size_t{desc.Width} * 4, desc.Height);
    std::vector<uint32_t> pixels(bytes.size() / 4);
    std::memcpy(pixels.data(), bytes.data(), bytes.size());
    return pixels;
}
