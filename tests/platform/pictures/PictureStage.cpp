#include "tests/platform/pictures/PictureStage.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>

PictureStage::PictureStage() = default;

PictureStage::~PictureStage()
{
    for (DWORD stage = 0; IsUsable() && stage < 8; ++stage)
        Device()->SetTexture(stage, nullptr);
}

void PictureStage::Check(HRESULT result)
{
    EXPECT_EQ(result, D3D_OK);
}

Picture PictureStage::Draw(const std::function<void(PictureStage&)>& draw)
{
    Check(Device()->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0xFF202020, 1.0f, 0));
    Check(Device()->BeginScene());
    State(D3DRS_LIGHTING, static_cast<DWORD>(FALSE));
    State(D3DRS_CULLMODE, static_cast<DWORD>(D3DCULL_NONE));
    draw(*this);
    Check(Device()->EndScene());
    return {kSide, kSide, device.ReadBackBuffer()};
}

void PictureStage::State(D3DRENDERSTATETYPE state, DWORD value)
{
    Check(Device()->SetRenderState(state, value));
}

void PictureStage::State(D3DRENDERSTATETYPE state, float value)
{
    State(state, std::bit_cast<DWORD>(value));
}

void PictureStage::Colour(DWORD stage, DWORD operation, DWORD arg1, DWORD arg2)
{
    Check(Device()->SetTextureStageState(stage, D3DTSS_COLOROP, operation));
    Check(Device()->SetTextureStageState(stage, D3DTSS_COLORARG1, arg1));
    Check(Device()->SetTextureStageState(stage, D3DTSS_COLORARG2, arg2));
}

void PictureStage::Alpha(DWORD stage, DWORD operation, DWORD arg1, DWORD arg2)
{
    Check(Device()->SetTextureStageState(stage, D3DTSS_ALPHAOP, operation));
    Check(Device()->SetTextureStageState(stage, D3DTSS_ALPHAARG1, arg1));
    Check(Device()->SetTextureStageState(stage, D3DTSS_ALPHAARG2, arg2));
}

void PictureStage::Filter(DWORD stage, DWORD filter, DWORD mipFilter)
{
    Check(Device()->SetSamplerState(stage, D3DSAMP_MAGFILTER, filter));
    Check(Device()->SetSamplerState(stage, D3DSAMP_MINFILTER, filter));
    Check(Device()->SetSamplerState(stage, D3DSAMP_MIPFILTER, mipFilter));
}

void PictureStage::Address(DWORD stage, DWORD u, DWORD v)
{
    Check(Device()->SetSamplerState(stage, D3DSAMP_ADDRESSU, u));
    Check(Device()->SetSamplerState(stage, D3DSAMP_ADDRESSV, v));
}

void PictureStage::LookAtOrigin()
{
    D3DXMATRIX view, projection;
    D3DXMatrixTranslation(&view, 0.0f, 0.0f, 3.0f);
    D3DXMatrixPerspectiveFovLH(&projection, 1.0471976f, 1.0f, 0.5f, 20.0f);
    Check(Device()->SetTransform(D3DTS_VIEW, &view));
    Check(Device()->SetTransform(D3DTS_PROJECTION, &projection));
}

void PictureStage::World(const D3DXMATRIX& matrix)
{
    Check(Device()->SetTransform(D3DTS_WORLD, &matrix));
}

void PictureStage::Rectangle(float left, float top, float right, float bottom, D3DCOLOR colour,
                             float z, float repeats)
{
    // Half a pixel to the upper left, so that texels match pixels and edges lie between centres.
    const float x0 = left - 0.5f, y0 = top - 0.5f, x1 = right - 0.5f, y1 = bottom - 0.5f;
    DrawVertices<FlatVertex>(D3DPT_TRIANGLESTRIP, 2,
                             {{x0, y0, z, 1.0f, colour, 0.0f, 0.0f},
                              {x1, y0, z, 1.0f, colour, repeats, 0.0f},
                              {x0, y1, z, 1.0f, colour, 0.0f, repeats},
                              {x1, y1, z, 1.0f, colour, repeats, repeats}});
}

void PictureStage::Board(D3DCOLOR colour, float repeats)
{
    DrawVertices<ModelVertex>(D3DPT_TRIANGLESTRIP, 2,
                              {{-1, 1, 0, 0, 0, -1, colour, 0, 0},
                               {1, 1, 0, 0, 0, -1, colour, repeats, 0},
                               {-1, -1, 0, 0, 0, -1, colour, 0, repeats},
                               {1, -1, 0, 0, 0, -1, colour, repeats, repeats}});
}

void PictureStage::Sphere(int rings)
{
    const auto point = [rings](int ring, int step) {
        const double latitude = 3.14159265358979 * ring / rings;
        const double longitude = 3.14159265358979 * step / rings;
        const auto x = static_cast<float>(std::sin(latitude) * std::cos(longitude));
        const auto y = static_cast<float>(std::cos(latitude));
        const auto z = static_cast<float>(std::sin(latitude) * std::sin(longitude));
        const float u = static_cast<float>(step) / static_cast<float>(rings);
        const float v = static_cast<float>(ring) / static_cast<float>(rings);
        return ModelVertex{x, y, z, x, y, z, 0xFFFFFFFF, u, v};
    };
    std::vector<ModelVertex> vertices;
    for (int ring = 0; ring < rings; ++ring)
        for (int step = 0; step < rings * 2; ++step)
            for (const auto& [down, along] :
                 {std::pair(0, 0), {0, 1}, {1, 0}, {1, 0}, {0, 1}, {1, 1}})
                vertices.push_back(point(ring + down, step + along));
    DrawVertices(D3DPT_TRIANGLELIST, static_cast<UINT>(vertices.size() / 3), vertices);
}

IDirect3DTexture9* PictureStage::Texture(UINT size,
                                         const std::function<DWORD(UINT x, UINT y)>& texel,
                                         D3DFORMAT format)
{
    IDirect3DTexture9* made = nullptr;
    Check(Device()->CreateTexture(size, size, 1, 0, format, D3DPOOL_MANAGED, &made, nullptr));
    textures.emplace_back(made);
    D3DLOCKED_RECT locked = {};
    Check(made->LockRect(0, &locked, nullptr, 0));
    const size_t bytes = format == D3DFMT_A8R8G8B8 || format == D3DFMT_X8R8G8B8 ? 4 : 2;
    for (UINT y = 0; y < size; ++y)
        for (UINT x = 0; x < size; ++x) {
            const DWORD word = texel(x, y);
            std::memcpy(static_cast<BYTE*>(locked.pBits) + ptrdiff_t{locked.Pitch} * y + x * bytes,
                        &word, bytes);
        }
    Check(made->UnlockRect(0));
    return made;
}

IDirect3DTexture9* PictureStage::Checker(D3DCOLOR a, D3DCOLOR b)
{
    return Texture(64, [=](UINT x, UINT y) { return (x / 8 + y / 8) % 2 == 0 ? a : b; });
}

IDirect3DTexture9* PictureStage::Gradient()
{
    return Texture(
        64, [](UINT x, UINT y) { return (x * 4) << 24 | (x * 4) << 16 | (y * 4) << 8 | 0x40; });
}

IDirect3DTexture9* PictureStage::LevelColours()
{
    constexpr DWORD kColours[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00,
                                  0xFFFFFFFF, 0xFF00FFFF, 0xFFFF00FF};
    IDirect3DTexture9* made = nullptr;
    Check(Device()->CreateTexture(64, 64, 0, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &made, nullptr));
    textures.emplace_back(made);
    for (UINT level = 0; level < made->GetLevelCount(); ++level) {
        D3DLOCKED_RECT locked = {};
        Check(made->LockRect(level, &locked, nullptr, 0));
        for (UINT y = 0; y < 64u >> level; ++y)
            for (UINT x = 0; x < 64u >> level; ++x)
                std::memcpy(static_cast<BYTE*>(locked.pBits) + ptrdiff_t{locked.Pitch} * y + x * 4,
                            &kColours[level], 4);
        Check(made->UnlockRect(level));
    }
    return made;
}
