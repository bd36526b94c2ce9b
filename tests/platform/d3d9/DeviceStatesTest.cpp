#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <bit>

namespace {

class MixedDeviceTest : public DeviceTest {
protected:
    MixedDeviceTest() : DeviceTest(D3DCREATE_MIXED_VERTEXPROCESSING) {}
};

D3DMATRIX Numbered(float first)
{
    D3DMATRIX matrix = {};
    for (int i = 0; i < 16; ++i)
        matrix.m[i / 4][i % 4] = first + static_cast<float>(i);
    return matrix;
}

} // namespace

TEST_F(DeviceTest, RenderStatesKeepTheirValues)
{
    const DWORD size = std::bit_cast<DWORD>(12.5f);
    EXPECT_EQ(device->SetRenderState(D3DRS_POINTSIZE, size), D3D_OK);
    EXPECT_EQ(device->SetRenderState(D3DRS_CULLMODE, D3DCULL_CW), D3D_OK);
    EXPECT_EQ(device->SetRenderState(D3DRS_ZENABLE, D3DZB_USEW), D3D_OK);
    DWORD value = 0;
    EXPECT_EQ(device->GetRenderState(D3DRS_POINTSIZE, &value), D3D_OK);
    EXPECT_EQ(value, size);
    EXPECT_EQ(device->GetRenderState(D3DRS_CULLMODE, &value), D3D_OK);
    EXPECT_EQ(value, static_cast<DWORD>(D3DCULL_CW));
    EXPECT_EQ(device->GetRenderState(D3DRS_ZENABLE, &value), D3D_OK);
    EXPECT_EQ(value, static_cast<DWORD>(D3DZB_USEW));
}

TEST_F(DeviceTest, StageAndSamplerStatesAreKeptForEachStage)
{
    EXPECT_EQ(device->SetTextureStageState(1, D3DTSS_COLOROP, D3DTOP_ADDSIGNED), D3D_OK);
    EXPECT_EQ(device->SetTextureStageState(2, D3DTSS_CONSTANT, 0x12345678), D3D_OK);
    EXPECT_EQ(device->SetSamplerState(1, D3DSAMP_ADDRESSU, D3DTADDRESS_CLAMP), D3D_OK);
    DWORD value = 0;
    EXPECT_EQ(device->GetTextureStageState(1, D3DTSS_COLOROP, &value), D3D_OK);
    EXPECT_EQ(value, static_cast<DWORD>(D3DTOP_ADDSIGNED));
    EXPECT_EQ(device->GetTextureStageState(2, D3DTSS_CONSTANT, &value), D3D_OK);
    EXPECT_EQ(value, 0x12345678u);
    EXPECT_EQ(device->GetSamplerState(1, D3DSAMP_ADDRESSU, &value), D3D_OK);
    EXPECT_EQ(value, static_cast<DWORD>(D3DTADDRESS_CLAMP));
    EXPECT_EQ(device->GetSamplerState(2, D3DSAMP_ADDRESSU, &value), D3D_OK);
    EXPECT_EQ(value, static_cast<DWORD>(D3DTADDRESS_WRAP));
}

TEST_F(DeviceTest, TransformsKeepEachElement)
{
    const D3DTRANSFORMSTATETYPE types[] = {D3DTS_VIEW, D3DTS_PROJECTION, D3DTS_WORLD,
                                           D3DTS_WORLDMATRIX(25), D3DTS_TEXTURE3};
    float first = 1.0f;
    for (const D3DTRANSFORMSTATETYPE type : types) {
        const D3DMATRIX matrix = Numbered(first);
        EXPECT_EQ(device->SetTransform(type, &matrix), D3D_OK) << type;
        first += 100.0f;
    }
    first = 1.0f;
    for (const D3DTRANSFORMSTATETYPE type : types) {
        D3DMATRIX matrix = {};
        EXPECT_EQ(device->GetTransform(type, &matrix), D3D_OK) << type;
        EXPECT_EQ(matrix._11, first) << type;
        EXPECT_EQ(matrix._12, first + 1.0f) << type;
        EXPECT_EQ(matrix._44, first + 15.0f) << type;
        first += 100.0f;
    }
}

/// Scaling by 2 before a translation by 3 leaves the translation unchanged: the row vector (x, 1)
/// becomes (2 x, 1) and then (2 x + 3, 1).
TEST_F(DeviceTest, AMultipliedTransformGoesFirst)
{
    D3DMATRIX move = {}, scale = {};
    move._11 = move._22 = move._33 = move._44 = 1.0f;
    move._41 = 3.0f;
    scale._11 = scale._22 = scale._33 = 2.0f;
    scale._44 = 1.0f;
    ASSERT_EQ(device->SetTransform(D3DTS_WORLD, &move), D3D_OK);
    ASSERT_EQ(device->MultiplyTransform(D3DTS_WORLD, &scale), D3D_OK);
    D3DMATRIX product = {};
    ASSERT_EQ(device->GetTransform(D3DTS_WORLD, &product), D3D_OK);
    EXPECT_EQ(product._11, 2.0f);
    EXPECT_EQ(product._41, 3.0f);
}

TEST_F(DeviceTest, AViewportIsKept)
{
    const D3DVIEWPORT9 wanted = {8, 4, 16, 12, 0.25f, 0.75f};
    EXPECT_EQ(device->SetViewport(&wanted), D3D_OK);
    D3DVIEWPORT9 viewport = {};
    EXPECT_EQ(device->GetViewport(&viewport), D3D_OK);
    EXPECT_EQ(viewport.X, 8u);
    EXPECT_EQ(viewport.Y, 4u);
    EXPECT_EQ(viewport.Width, 16u);
    EXPECT_EQ(viewport.Height, 12u);
    EXPECT_EQ(viewport.MinZ, 0.25f);
    EXPECT_EQ(viewport.MaxZ, 0.75f);
}

TEST_F(DeviceTest, AMaterialIsKept)
{
    D3DMATERIAL9 wanted = {};
    wanted.Diffuse = {0.1f, 0.2f, 0.3f, 0.4f};
    wanted.Emissive = {0.5f, 0.6f, 0.7f, 0.8f};
    wanted.Power = 9.0f;
    EXPECT_EQ(device->SetMaterial(&wanted), D3D_OK);
    D3DMATERIAL9 material = {};
    EXPECT_EQ(device->GetMaterial(&material), D3D_OK);
    EXPECT_EQ(material.Diffuse.g, 0.2f);
    EXPECT_EQ(material.Emissive.a, 0.8f);
    EXPECT_EQ(material.Power, 9.0f);
}

TEST_F(DeviceTest, LightsAreKeptByTheirIndex)
{
    D3DLIGHT9 wanted = {};
    wanted.Type = D3DLIGHT_POINT;
    wanted.Diffuse = {0.5f, 0.25f, 0.125f, 1.0f};
    wanted.Range = 30.0f;
    wanted.Attenuation0 = 1.0f;
    EXPECT_EQ(device->SetLight(7, &wanted), D3D_OK);
    D3DLIGHT9 light = {};
    EXPECT_EQ(device->GetLight(7, &light), D3D_OK);
    EXPECT_EQ(light.Type, D3DLIGHT_POINT);
    EXPECT_EQ(light.Diffuse.g, 0.25f);
    EXPECT_EQ(light.Range, 30.0f);
    BOOL enabled = TRUE;
    EXPECT_EQ(device->GetLightEnable(7, &enabled), D3D_OK);
    EXPECT_FALSE(enabled);
    EXPECT_EQ(device->LightEnable(7, TRUE), D3D_OK);
    EXPECT_EQ(device->GetLightEnable(7, &enabled), D3D_OK);
    EXPECT_TRUE(enabled);
}

TEST_F(DeviceTest, ALightThatWasNeverSetIsUnknown)
{
    D3DLIGHT9 light = {};
    BOOL enabled = FALSE;
    EXPECT_EQ(device->GetLight(3, &light), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetLightEnable(3, &enabled), D3DERR_INVALIDCALL);
}

/// The public reference: white diffuse light along z, everything else 0.
TEST_F(DeviceTest, ALightThatWasOnlyEnabledShinesWhiteAlongZ)
{
    EXPECT_EQ(device->LightEnable(8, TRUE), D3D_OK);
    D3DLIGHT9 light = {};
    ASSERT_EQ(device->GetLight(8, &light), D3D_OK);
    EXPECT_EQ(light.Type, D3DLIGHT_DIRECTIONAL);
    EXPECT_EQ(light.Diffuse.r, 1.0f);
    EXPECT_EQ(light.Diffuse.b, 1.0f);
    EXPECT_EQ(light.Ambient.r, 0.0f);
    EXPECT_EQ(light.Direction.x, 0.0f);
    EXPECT_EQ(light.Direction.z, 1.0f);
}

TEST_F(DeviceTest, ALightOfNoKindIsRefused)
{
    D3DLIGHT9 light = {};
    EXPECT_EQ(device->SetLight(0, &light), D3DERR_INVALIDCALL);
}

TEST_F(DeviceTest, ClipPlanesAndScissorAreKept)
{
    const float wanted[4] = {1.0f, 2.0f, 3.0f, 4.0f};
    EXPECT_EQ(device->SetClipPlane(5, wanted), D3D_OK);
    float plane[4] = {};
    EXPECT_EQ(device->GetClipPlane(5, plane), D3D_OK);
    EXPECT_EQ(plane[0], 1.0f);
    EXPECT_EQ(plane[3], 4.0f);
    const RECT area = {1, 2, 30, 40};
    EXPECT_EQ(device->SetScissorRect(&area), D3D_OK);
    RECT scissor = {};
    EXPECT_EQ(device->GetScissorRect(&scissor), D3D_OK);
    EXPECT_EQ(scissor.left, 1);
    EXPECT_EQ(scissor.bottom, 40);
}

TEST_F(DeviceTest, ABoundTextureIsGivenBackWithAReference)
{
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    ASSERT_EQ(device->SetTexture(1, texture.Get()), D3D_OK);
    EXPECT_EQ(ReferenceCount(texture.Get()), 1u) << "a binding is no reference";
    Com<IDirect3DBaseTexture9> bound;
    ASSERT_EQ(device->GetTexture(1, bound.Out()), D3D_OK);
    EXPECT_EQ(bound.Get(), texture.Get());
    EXPECT_EQ(ReferenceCount(texture.Get()), 2u);
    EXPECT_EQ(device->SetTexture(1, nullptr), D3D_OK);
}

TEST_F(DeviceTest, ABoundTextureOutlivesItsLastRelease)
{
    Com<IDirect3DTexture9> texture = Texture(16, 8, 1, D3DPOOL_MANAGED);
    ASSERT_EQ(device->SetTexture(0, texture.Get()), D3D_OK);
    EXPECT_EQ(texture.Release(), 0u);
    Com<IDirect3DBaseTexture9> bound;
    ASSERT_EQ(device->GetTexture(0, bound.Out()), D3D_OK);
    ASSERT_TRUE(bound);
    EXPECT_EQ(bound->GetType(), D3DRTYPE_TEXTURE);
    EXPECT_EQ(bound->GetLevelCount(), 1u);
}

TEST_F(DeviceTest, StreamsAndIndicesAreGivenBack)
{
    Com<IDirect3DVertexBuffer9> vertices, boundVertices;
    Com<IDirect3DIndexBuffer9> indices, boundIndices;
    ASSERT_EQ(
        device->CreateVertexBuffer(96, 0, D3DFVF_XYZ, D3DPOOL_MANAGED, vertices.Out(), nullptr),
        D3D_OK);
    ASSERT_EQ(
        device->CreateIndexBuffer(12, 0, D3DFMT_INDEX16, D3DPOOL_MANAGED, indices.Out(), nullptr),
        D3D_OK);
    EXPECT_EQ(device->SetStreamSource(0, vertices.Get(), 24, 12), D3D_OK);
    EXPECT_EQ(device->SetIndices(indices.Get()), D3D_OK);
    EXPECT_EQ(device->SetFVF(D3DFVF_XYZ), D3D_OK);
    UINT offset = 0, stride = 0;
    EXPECT_EQ(device->GetStreamSource(0, boundVertices.Out(), &offset, &stride), D3D_OK);
    EXPECT_EQ(boundVertices.Get(), vertices.Get());
    EXPECT_EQ(offset, 24u);
    EXPECT_EQ(stride, 12u);
    EXPECT_EQ(device->GetIndices(boundIndices.Out()), D3D_OK);
    EXPECT_EQ(boundIndices.Get(), indices.Get());
    DWORD fvf = 0;
    EXPECT_EQ(device->GetFVF(&fvf), D3D_OK);
    EXPECT_EQ(fvf, static_cast<DWORD>(D3DFVF_XYZ));
    EXPECT_EQ(device->SetStreamSource(0, nullptr, 0, 0), D3D_OK);
    EXPECT_EQ(device->SetIndices(nullptr), D3D_OK);
}

TEST_F(DeviceTest, ANewTargetSetsViewportAndScissorToItsSize)
{
    const Com<IDirect3DSurface9> target = Target(20, 10);
    ASSERT_EQ(device->SetRenderTarget(0, target.Get()), D3D_OK);
    D3DVIEWPORT9 viewport = {};
    ASSERT_EQ(device->GetViewport(&viewport), D3D_OK);
    EXPECT_EQ(viewport.Width, 20u);
    EXPECT_EQ(viewport.Height, 10u);
    RECT scissor = {};
    ASSERT_EQ(device->GetScissorRect(&scissor), D3D_OK);
    EXPECT_EQ(scissor.right, 20);
    Com<IDirect3DSurface9> bound;
    ASSERT_EQ(device->GetRenderTarget(0, bound.Out()), D3D_OK);
    EXPECT_EQ(bound.Get(), target.Get());
}

TEST_F(DeviceTest, TheFirstTargetCannotBeTakenAway)
{
    EXPECT_EQ(device->SetRenderTarget(0, nullptr), D3DERR_INVALIDCALL);
    const Com<IDirect3DSurface9> plain = SystemSurface(64, 48);
    EXPECT_EQ(device->SetRenderTarget(0, plain.Get()), D3DERR_INVALIDCALL);
}

TEST_F(DeviceTest, ATextureLevelCanBeTheTarget)
{
    const Com<IDirect3DTexture9> texture =
        Texture(32, 32, 1, D3DPOOL_DEFAULT, D3DUSAGE_RENDERTARGET);
    Com<IDirect3DSurface9> level;
    ASSERT_EQ(texture->GetSurfaceLevel(0, level.Out()), D3D_OK);
    EXPECT_EQ(device->SetRenderTarget(0, level.Get()), D3D_OK);
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0x80402010, 1.0f, 0), D3D_OK);
    EXPECT_EQ(Read(level.Get()), std::vector<uint32_t>(32 * 32, 0x80402010));
}

TEST_F(DeviceTest, ADepthBufferCanBeChanged)
{
    Com<IDirect3DSurface9> depth, bound;
    ASSERT_EQ(device->CreateDepthStencilSurface(64, 48, D3DFMT_D24S8, D3DMULTISAMPLE_NONE, 0, FALSE,
                                                depth.Out(), nullptr),
              D3D_OK);
    EXPECT_EQ(device->SetDepthStencilSurface(depth.Get()), D3D_OK);
    EXPECT_EQ(device->GetDepthStencilSurface(bound.Out()), D3D_OK);
    EXPECT_EQ(bound.Get(), depth.Get());
}

TEST_F(MixedDeviceTest, SwitchesBetweenHardwareAndSoftware)
{
    EXPECT_FALSE(device->GetSoftwareVertexProcessing());
    EXPECT_EQ(device->SetSoftwareVertexProcessing(TRUE), D3D_OK);
    EXPECT_TRUE(device->GetSoftwareVertexProcessing());
    EXPECT_EQ(device->SetSoftwareVertexProcessing(FALSE), D3D_OK);
    EXPECT_FALSE(device->GetSoftwareVertexProcessing());
}

TEST_F(DeviceTest, ThereIsNoShaderAtFirst)
{
    Com<IDirect3DVertexShader9> vertexShader;
    Com<IDirect3DPixelShader9> pixelShader;
    EXPECT_EQ(device->GetVertexShader(vertexShader.Out()), D3D_OK);
    EXPECT_EQ(device->GetPixelShader(pixelShader.Out()), D3D_OK);
    EXPECT_EQ(vertexShader.Get(), nullptr);
    EXPECT_EQ(pixelShader.Get(), nullptr);
    EXPECT_EQ(device->SetVertexShader(nullptr), D3D_OK);
    EXPECT_EQ(device->SetPixelShader(nullptr), D3D_OK);
}
