#include "tests/gfx/TextureEngine.h"

#include "base/ResetLogForTests.h"

namespace {

IDirect3D9* gOffered; // given to the engine; not owned

IDirect3D9* GiveOffered(UINT)
{
    gOffered->AddRef();
    return gOffered;
}

TextureCreation gLastCreation;

HRESULT WINAPI NoteAndCreate(IDirect3DDevice9* device, LPCSTR file, UINT width, UINT height,
                             UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool, DWORD filter,
                             DWORD mipFilter, D3DCOLOR colorKey, D3DXIMAGE_INFO* info,
                             PALETTEENTRY* palette, IDirect3DTexture9** textureOut)
{
    gLastCreation = {width, height, filter, mipFilter};
    return D3DXCreateTextureFromFileExA(device, file, width, height, levels, usage, format, pool,
                                        filter, mipFilter, colorKey, info, palette, textureOut);
}

constexpr KRE_GfxRuntime kRuntime = {
    [](const char*) { return true; }, GiveOffered,  D3DXCreateEffectPool, D3DXCreateEffectFromFileA,
    D3DXCreateRenderToSurface,        NoteAndCreate};

void AppendWord(std::string& bytes, uint32_t value)
{
    for (int shift = 0; shift < 16; shift += 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
}

void AppendLong(std::string& bytes, uint32_t value)
{
    AppendWord(bytes, value & 0xFFFF);
    AppendWord(bytes, value >> 16);
}

} // namespace

TextureEngine::TextureEngine()
{
    ResetLogForTests();
    gLastCreation = {};
    direct3D = RecordingDirect3D::WrapReal();
    gOffered = direct3D.get();
    gfx = std::make_unique<KRE_Gfx>(kRuntime);
    gfx->InitDevice(window.Handle(), 1, nullptr, 16, 0, 0, 0);
}

TextureEngine::~TextureEngine()
{
    gfx.reset();
    direct3D.reset();
    ResetLogForTests();
}

const TextureCreation& TextureEngine::LastCreation()
{
    return gLastCreation;
}

std::string TextureEngine::Warnings() const
{
    return gKreWarningCount > 0 ? gKreErrorRecord.message : "";
}

D3DCOLOR PixelOf(KRE_Texture& texture, int32_t x, int32_t y)
{
    D3DCOLOR color = 0;
    texture.Lock(nullptr, D3DLOCK_READONLY);
    EXPECT_TRUE(texture.GetPixel(x, y, &color));
    texture.Unlock();
    return color;
}

std::string Bmp24(int32_t width, int32_t height, const std::vector<DWORD>& pixels)
{
    std::string rows;
    for (int32_t y = height - 1; y >= 0; --y) { // from the bottom up
        for (int32_t x = 0; x < width; ++x) {
            const DWORD pixel = pixels[static_cast<size_t>(y * width + x)];
            AppendWord(rows, pixel & 0xFFFF);
            rows += static_cast<char>(pixel >> 16 & 0xFF);
        }
        rows.append(static_cast<size_t>(width % 4), '\0'); // pads 3 * width to a multiple of 4
    }
    constexpr uint32_t kHeaders = 14 + 40;
    std::string bytes = "BM";
    AppendLong(bytes, kHeaders + static_cast<uint32_t>(rows.size()));
    AppendLong(bytes, 0);
    AppendLong(bytes, kHeaders);
    AppendLong(bytes, 40);
    AppendLong(bytes, static_cast<uint32_t>(width));
    AppendLong(bytes, static_cast<uint32_t>(height));
    AppendWord(bytes, 1);  // planes
    AppendWord(bytes, 24); // bits
    AppendLong(bytes, 0);  // not compressed
    AppendLong(bytes, static_cast<uint32_t>(rows.size()));
    for (int i = 0; i < 4; ++i) // resolution and palette
        AppendLong(bytes, 0);
    return bytes + rows;
}

std::string Tga32(int32_t width, int32_t height, const std::vector<DWORD>& pixels)
{
    std::string bytes("\0\0\2\0\0\0\0\0\0\0\0\0", 12); // true colour, no palette
    AppendWord(bytes, static_cast<uint32_t>(width));
    AppendWord(bytes, static_cast<uint32_t>(height));
    bytes += "\x20\x28"; // 32 bits; 8 of them alpha, rows from the top
    for (const DWORD pixel : pixels)
        AppendLong(bytes, pixel);
    return bytes;
}

std::string PlainBmp(int32_t width, int32_t height, DWORD color)
{
    return Bmp24(width, height, std::vector<DWORD>(static_cast<size_t>(width * height), color));
}
