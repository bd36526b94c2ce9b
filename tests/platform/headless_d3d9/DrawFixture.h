#pragma once

#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <string>

/// A vertex given by its position on the target.
struct ScreenVertex {
    float x, y, z = 0.5f, rhw = 1.0f;
    D3DCOLOR diffuse = 0xFFFFFFFF;
    D3DCOLOR specular = 0;
    float u = 0.0f, v = 0.0f;

    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_DIFFUSE | D3DFVF_SPECULAR | D3DFVF_TEX1;
};

/// A target of 8 x 8 pixels with alpha, initially transparent black, in a scene; no lighting, no
/// culling, no depth test.
class DrawTest : public DeviceTest {
protected:
    static constexpr UINT kSide = 8;

    void SetUp() override;
    void TearDown() override;

    void State(D3DRENDERSTATETYPE state, DWORD value);
    void State(D3DRENDERSTATETYPE state, float value);
    void Stage(DWORD stage, D3DTEXTURESTAGESTATETYPE type, DWORD value);
    void Sampler(DWORD stage, D3DSAMPLERSTATETYPE type, DWORD value);

    template <typename Vertex>
    HRESULT Draw(D3DPRIMITIVETYPE type, UINT count, const std::vector<Vertex>& vertices)
    {
        EXPECT_EQ(device->SetFVF(Vertex::kFormat), D3D_OK);
        return device->DrawPrimitiveUP(type, count, vertices.data(), sizeof(Vertex));
    }

    /// Fills the pixels left <= x < right, top <= y < bottom.
    void Fill(float left, float top, float right, float bottom, D3DCOLOR colour, float z = 0.5f);
    /// Fills the whole target; the texture covers it once.
    void FillAll(D3DCOLOR colour = 0xFFFFFFFF, float z = 0.5f);
    /// One pixel of the target after filling it.
    uint32_t Filled(D3DCOLOR colour = 0xFFFFFFFF);

    /// A texture `width` texels wide, bound to `stage` and owned by the fixture.
    IDirect3DTexture9* BindTexels(DWORD stage, UINT width, UINT height,
                                  const std::vector<uint32_t>& texels);

    std::vector<uint32_t> Pixels() { return Read(target.Get()); }
    uint32_t Pixel(UINT x, UINT y) { return Pixels()[y * kSide + x]; }
    /// The target as rows of '#' for drawn pixels and '.' for others.
    std::string Coverage();

    Com<IDirect3DSurface9> target;

private:
    std::vector<Com<IDirect3DTexture9>> textures;
};
