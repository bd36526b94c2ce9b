#pragma once

#include "tests/support/ComHandle.h"
#include "tests/support/HiddenWindow.h"

#include <d3dx9.h>

#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

using TextureHandle = ComHandle<IDirect3DTexture9>;

/// The options of a load; the defaults do not change the picture.
struct LoadRequest {
    UINT width = 0;
    UINT height = 0;
    UINT levels = 1;
    DWORD usage = 0;
    D3DFORMAT format = D3DFMT_UNKNOWN;
    D3DPOOL pool = D3DPOOL_MANAGED;
    DWORD filter = D3DX_FILTER_NONE;
    DWORD mipFilter = D3DX_FILTER_BOX;
    D3DCOLOR colorKey = 0;
};

/// A device of 64 by 64 pixels in a hidden window, both destroyed at the end of the test.
class ImageDevice : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Loads the bytes of an image file; on failure returns null and sets `resultOut`.
    TextureHandle Load(const std::string& file, const LoadRequest& request = {});

    /// Fails the test if the file cannot be loaded.
    std::vector<uint32_t> LoadArgb(const std::string& file, LoadRequest request = {});

    /// Resets the device with its original parameters.
    HRESULT Reset();

    IDirect3DDevice9* device = nullptr; // owned, released by TearDown
    HRESULT result = S_OK;              // of the last `Load`

private:
    D3DPRESENT_PARAMETERS Parameters() const;

    HiddenWindow window{200, 200};
    ComHandle<IDirect3D9> d3d;
};

D3DSURFACE_DESC DescOf(IDirect3DTexture9& texture, UINT level = 0);

/// The bytes of one level without padding, `rowBytes` per row of pixels or blocks.
std::string LevelBytes(IDirect3DTexture9& texture, UINT level, size_t rowBytes, UINT rows);

/// The pixels of one level of a texture with 32 bits per pixel.
std::vector<uint32_t> LevelPixels(IDirect3DTexture9& texture, UINT level = 0);
