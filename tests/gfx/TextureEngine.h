#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "gfx/KRE_Gfx.h"
#include "tests/gfx/ErrorText.h"
#include "tests/support/HiddenWindow.h"
#include "tests/support/RecordingDirect3D.h"
#include "tests/support/ScratchDirectory.h"

/// What D3DX was asked for when a picture was read.
struct TextureCreation {
    UINT width = 0;
    UINT height = 0;
    DWORD filter = 0;
    DWORD mipFilter = 0;
};

/// An engine with a real device wrapped by a recording one, in a new directory, with an empty log.
class TextureEngine : public testing::Test {
protected:
    TextureEngine();
    ~TextureEngine() override;

    /// Loads with the defaults: slot or frame freed, stretched, managed, one level.
    void Load(KRE_Texture& texture, const char* file, int32_t mode = -1, int32_t format = -1,
              int32_t mipLevels = 1)
    {
        gfx->LoadTexture(&texture, file, 0, mode, format, mipLevels);
    }
    std::string LoadError(KRE_Texture& texture, const char* file, int32_t mode = -1)
    {
        return ErrorText([&] { Load(texture, file, mode); });
    }

    static const TextureCreation& LastCreation();

    /// The text of the last warning, unless there was none or an error followed it.
    std::string Warnings() const;

    ScratchDirectory directory;
    HiddenWindow window{64, 64};
    ComHandle<RecordingDirect3D> direct3D;
    std::unique_ptr<KRE_Gfx> gfx;
};

/// The pixel of a texture's current picture.
D3DCOLOR PixelOf(KRE_Texture& texture, int32_t x, int32_t y);

// Picture files. Pixels are 0xAARRGGBB, row by row from the top.

/// Windows bitmap of 24 bits; alpha is dropped.
std::string Bmp24(int32_t width, int32_t height, const std::vector<DWORD>& pixels);
/// Targa of 32 bits, uncompressed.
std::string Tga32(int32_t width, int32_t height, const std::vector<DWORD>& pixels);
/// A picture of one colour as `Bmp24`.
std::string PlainBmp(int32_t width, int32_t height, DWORD color);
