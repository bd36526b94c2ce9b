#include "tests/platform/headless_d3d9/DrawFixture.h"

#include <bit>
#include <cstring>

void DrawTest::SetUp()
{
    DeviceTest::SetUp();
    target = Target(kSide, kSide);
    ASSERT_EQ(device->SetRenderTarget(0, target.Get()), D3D_OK);
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0, 1.0f, 0), D3D_OK);
    ASSERT_EQ(device->BeginScene(), D3D_OK);
    State(D3DRS_LIGHTING, static_cast<DWORD>(FALSE));
    State(D3DRS_CULLMODE, static_cast<DWORD>(D3DCULL_NONE));
    State(D3DRS_ZENABLE, static_cast<DWORD>(D3DZB_FALSE));
}

void DrawTest::TearDown()
{
    for (DWORD stage = 0; stage < 8; ++stage)
        device->SetTexture(stage, nullptr);
    textures.clear();
    target.Release();
    DeviceTest::TearDown();
}

void DrawTest::State(D3DRENDERSTATETYPE state, DWORD value)
{
    EXPECT_EQ(device->SetRenderState(state, value), D3D_OK);
}

void DrawTest::State(D3DRENDERSTATETYPE state, float value)
{
    State(state, std::bit_cast<DWORD>(value));
}

void DrawTest::Stage(DWORD stage, D3DTEXTURESTAGESTATETYPE type, DWORD value)
{
    EXPECT_EQ(device->SetTextureStageState(stage, type, value), D3D_OK);
}

void DrawTest::Sampler(DWORD stage, D3DSAMPLERSTATETYPE type, DWORD value)
{
    EXPECT_EQ(device->SetSamplerState(stage, type, value), D3D_OK);
}

void DrawTest::Fill(float left, float top, float right, float bottom, D3DCOLOR colour, float z)
{
    // Pixel centres are at integers, so the edges are half a pixel before them.
    const float x0 = left - 0.5f, y0 = top - 0.5f, x1 = right - 0.5f, y1 = bottom - 0.5f;
    EXPECT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLESTRIP, 2,
                                 {{x0, y0, z, 1.0f, colour, 0, 0.0f, 0.0f},
                                  {x1, y0, z, 1.0f, colour, 0, 1.0f, 0.0f},
                                  {x0, y1, z, 1.0f, colour, 0, 0.0f, 1.0f},
                                  {x1, y1, z, 1.0f, colour, 0, 1.0f, 1.0f}}),
              D3D_OK);
}

void DrawTest::FillAll(D3DCOLOR colour, float z)
{
    Fill(0, 0, kSide, kSide, colour, z);
}

uint32_t DrawTest::Filled(D3DCOLOR colour)
{
    FillAll(colour);
    return Pixel(3, 3);
}

IDirect3DTexture9* DrawTest::BindTexels(DWORD stage, UINT width, UINT height,
                                        const std::vector<uint32_t>& texels)
{
    Com<IDirect3DTexture9> texture = Texture(width, height, 1, D3DPOOL_MANAGED);
    D3DLOCKED_RECT locked = {};
    EXPECT_EQ(texture->LockRect(0, &locked, nullptr, 0), D3D_OK);
    for (UINT y = 0; y < height; ++y)
        std::memcpy(static_cast<uint8_t*>(locked.pBits) +
                        size_t{y} * static_cast<UINT>(locked.Pitch),
                    &texels[size_t{y} * width], width * 4);
    EXPECT_EQ(texture->UnlockRect(0), D3D_OK);
    EXPECT_EQ(device->SetTexture(stage, texture.Get()), D3D_OK);
    textures.push_back(std::move(texture));
    return textures.back().Get();
}

std::string DrawTest::Coverage()
{
    const std::vector<uint32_t> pixels = Pixels();
    std::string text;
    for (UINT i = 0; i < kSide * kSide; ++i) {
        text += pixels[i] != 0 ? '#' : '.';
        if (i % kSide == kSide - 1)
            text += '\n';
    }
    return text;
}
