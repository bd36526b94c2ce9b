#include "tests/support/FakeDevice.h"

#include "tests/support/RecordingDevice.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

class FakeDeviceTest : public testing::Test {
protected:
    void TearDown() override
    {
        device.reset();
        EXPECT_EQ(FakeObjectsAlive(), before) << "leaked fake objects";
    }

    int before = FakeObjectsAlive();
    ComHandle<RecordingDevice> device = RecordingDevice::Standalone(320, 200);
};

template <class Object, class Maker>
ComHandle<Object> Made(Maker make)
{
    Object* object = nullptr;
    make(&object);
    return ComHandle<Object>(object);
}

} // namespace

TEST_F(FakeDeviceTest, GivesBackWhatWasSet)
{
    device->SetRenderState(D3DRS_AMBIENT, 0x11223344);
    device->SetTextureStageState(1, D3DTSS_COLOROP, D3DTOP_ADD);
    device->SetSamplerState(2, D3DSAMP_ADDRESSU, D3DTADDRESS_MIRROR);
    device->SetFVF(0x42);
    DWORD value = 0;
    device->GetRenderState(D3DRS_AMBIENT, &value);
    EXPECT_EQ(value, 0x11223344u);
    device->GetTextureStageState(1, D3DTSS_COLOROP, &value);
    EXPECT_EQ(value, static_cast<DWORD>(D3DTOP_ADD));
    device->GetTextureStageState(0, D3DTSS_COLOROP, &value);
    EXPECT_EQ(value, 0u);
    device->GetSamplerState(2, D3DSAMP_ADDRESSU, &value);
    EXPECT_EQ(value, static_cast<DWORD>(D3DTADDRESS_MIRROR));
    device->GetFVF(&value);
    EXPECT_EQ(value, 0x42u);
    D3DVIEWPORT9 viewport = {};
    device->GetViewport(&viewport);
    EXPECT_EQ(viewport.Width, 320u);
    EXPECT_EQ(viewport.Height, 200u);
    EXPECT_EQ(viewport.MaxZ, 1.0f);
    D3DMATRIX matrix = {};
    device->GetTransform(D3DTS_PROJECTION, &matrix);
    EXPECT_EQ(matrix.m[2][2], 1.0f);
    EXPECT_EQ(matrix.m[2][3], 0.0f);
}

TEST_F(FakeDeviceTest, ResetForgetsStatesAndTakesTheNewSize)
{
    device->SetRenderState(D3DRS_AMBIENT, 5);
    D3DPRESENT_PARAMETERS parameters = {};
    parameters.BackBufferWidth = 100;
    parameters.BackBufferHeight = 50;
    parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
    EXPECT_EQ(device->Reset(&parameters), D3D_OK);
    DWORD value = 1;
    device->GetRenderState(D3DRS_AMBIENT, &value);
    EXPECT_EQ(value, 0u);
    D3DVIEWPORT9 viewport = {};
    device->GetViewport(&viewport);
    EXPECT_EQ(viewport.Width, 100u);
    IDirect3DSurface9* depth = nullptr;
    EXPECT_EQ(device->GetDepthStencilSurface(&depth), D3DERR_NOTFOUND); // not requested
    EXPECT_EQ(depth, nullptr);
}

TEST_F(FakeDeviceTest, BuffersKeepTheirBytesAndCheckTheirBounds)
{
    const auto buffer = Made<IDirect3DVertexBuffer9>([&](IDirect3DVertexBuffer9** out) {
        device->CreateVertexBuffer(12, 0, D3DFVF_XYZ, D3DPOOL_DEFAULT, out, nullptr);
    });
    void* data = nullptr;
    ASSERT_EQ(buffer->Lock(4, 8, &data, 0), D3D_OK);
    std::memcpy(data, "engine!", 8);
    EXPECT_EQ(buffer->Unlock(), D3D_OK);
    EXPECT_EQ(buffer->Unlock(), D3DERR_INVALIDCALL);
    ASSERT_EQ(buffer->Lock(0, 0, &data, 0), D3D_OK);
    EXPECT_STREQ(static_cast<char*>(data) + 4, "engine!");
    buffer->Unlock();
    EXPECT_EQ(buffer->Lock(4, 9, &data, 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(buffer->Lock(12, 0, &data, 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(buffer->Lock(0xFFFFFFFF, 2, &data, 0), D3DERR_INVALIDCALL);
}

TEST_F(FakeDeviceTest, IndexBuffersDescribeThemselves)
{
    const auto buffer = Made<IDirect3DIndexBuffer9>([&](IDirect3DIndexBuffer9** out) {
        device->CreateIndexBuffer(6, D3DUSAGE_DYNAMIC, D3DFMT_INDEX16, D3DPOOL_DEFAULT, out,
                                  nullptr);
    });
    D3DINDEXBUFFER_DESC desc = {};
    EXPECT_EQ(buffer->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Format, D3DFMT_INDEX16);
    EXPECT_EQ(desc.Usage, static_cast<DWORD>(D3DUSAGE_DYNAMIC));
    EXPECT_EQ(desc.Size, 6u);
    EXPECT_EQ(buffer->GetType(), D3DRTYPE_INDEXBUFFER);
}

// A chain halves each side down to 1: 8x2, 4x1, 2x1, 1x1.
TEST_F(FakeDeviceTest, ZeroLevelsAreTheFullChain)
{
    const auto texture = Made<IDirect3DTexture9>([&](IDirect3DTexture9** out) {
        device->CreateTexture(8, 2, 0, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, out, nullptr);
    });
    ASSERT_EQ(texture->GetLevelCount(), 4u);
    D3DSURFACE_DESC desc = {};
    EXPECT_EQ(texture->GetLevelDesc(1, &desc), D3D_OK);
    EXPECT_EQ(desc.Width, 4u);
    EXPECT_EQ(desc.Height, 1u);
    EXPECT_EQ(texture->GetLevelDesc(4, &desc), D3DERR_INVALIDCALL);
    IDirect3DTexture9* tooDeep = nullptr;
    EXPECT_EQ(device->CreateTexture(8, 2, 5, 0, D3DFMT_L8, D3DPOOL_MANAGED, &tooDeep, nullptr),
              D3DERR_INVALIDCALL);
}

TEST_F(FakeDeviceTest, TextureLocksFollowFormatAndRectangle)
{
    static const struct {
        const char* what;
        D3DFORMAT format;
        INT pitch;
        ptrdiff_t offset; // of the rectangle whose corner is at 4, 8
    } cases[] = {
        {"four bytes", D3DFMT_A8R8G8B8, 16 * 4, 8 * 64 + 4 * 4},
        {"two bytes", D3DFMT_R5G6B5, 16 * 2, 8 * 32 + 4 * 2},
        {"blocks of 8 bytes", D3DFMT_DXT1, 4 * 8, 2 * 32 + 1 * 8},
        {"blocks of 16 bytes", D3DFMT_DXT5, 4 * 16, 2 * 64 + 1 * 16},
    };
    for (const auto& c : cases) {
        const auto texture = Made<IDirect3DTexture9>([&](IDirect3DTexture9** out) {
            device->CreateTexture(16, 16, 1, 0, c.format, D3DPOOL_MANAGED, out, nullptr);
        });
        ASSERT_TRUE(texture) << c.what;
        D3DLOCKED_RECT whole = {};
        EXPECT_EQ(texture->LockRect(0, &whole, nullptr, 0), D3D_OK) << c.what;
        EXPECT_EQ(whole.Pitch, c.pitch) << c.what;
        D3DLOCKED_RECT part = {};
        const RECT rect = {4, 8, 8, 12};
        EXPECT_EQ(texture->LockRect(0, &part, &rect, 0), D3DERR_INVALIDCALL) << c.what;
        EXPECT_EQ(texture->UnlockRect(0), D3D_OK) << c.what;
        EXPECT_EQ(texture->UnlockRect(0), D3DERR_INVALIDCALL) << c.what;
        EXPECT_EQ(texture->LockRect(0, &part, &rect, 0), D3D_OK) << c.what;
        EXPECT_EQ(static_cast<BYTE*>(part.pBits) - static_cast<BYTE*>(whole.pBits), c.offset)
            << c.what;
        texture->UnlockRect(0);
    }
}

TEST_F(FakeDeviceTest, ALevelSharesTheReferencesOfItsTexture)
{
    auto texture = Made<IDirect3DTexture9>([&](IDirect3DTexture9** out) {
        device->CreateTexture(4, 4, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, out, nullptr);
    });
    IDirect3DSurface9* level = nullptr;
    ASSERT_EQ(texture->GetSurfaceLevel(0, &level), D3D_OK);
    texture->AddRef();
    EXPECT_EQ(texture->Release(), 2u);
    texture.reset();
    D3DSURFACE_DESC desc = {};
    EXPECT_EQ(level->GetDesc(&desc), D3D_OK); // the texture still exists
    EXPECT_EQ(level->Release(), 0u);
}

TEST_F(FakeDeviceTest, AReleasedResourceIsBoundNoMore)
{
    auto texture = Made<IDirect3DTexture9>([&](IDirect3DTexture9** out) {
        device->CreateTexture(4, 4, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, out, nullptr);
    });
    device->SetTexture(0, texture.get());
    IDirect3DBaseTexture9* bound = nullptr;
    device->GetTexture(0, &bound);
    EXPECT_EQ(bound, texture.get());
    EXPECT_EQ(bound->Release(), 1u);
    texture.reset();
    device->GetTexture(0, &bound);
    EXPECT_EQ(bound, nullptr);
}

TEST_F(FakeDeviceTest, AHeldBackBufferOutlivesTheDevice)
{
    IDirect3DSurface9* backBuffer = nullptr;
    device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer);
    device.reset();
    IDirect3DDevice9* owner = nullptr;
    EXPECT_EQ(backBuffer->GetDevice(&owner), D3DERR_INVALIDCALL);
    EXPECT_EQ(backBuffer->Release(), 0u);
}

TEST_F(FakeDeviceTest, AResourceKeepsItsDevice)
{
    auto buffer = Made<IDirect3DVertexBuffer9>([&](IDirect3DVertexBuffer9** out) {
        device->CreateVertexBuffer(12, 0, 0, D3DPOOL_DEFAULT, out, nullptr);
    });
    IDirect3DDevice9* fake = device->Wrapped();
    device.reset();
    const auto owner =
        Made<IDirect3DDevice9>([&](IDirect3DDevice9** out) { buffer->GetDevice(out); });
    EXPECT_EQ(owner.get(), fake);
    buffer.reset();
}

TEST_F(FakeDeviceTest, UnsupportedRequestsFail)
{
    IDirect3DQuery9* query = nullptr;
    EXPECT_EQ(device->CreateQuery(D3DQUERYTYPE_EVENT, &query), D3DERR_INVALIDCALL);
    IDirect3DStateBlock9* block = nullptr;
    EXPECT_EQ(device->CreateStateBlock(D3DSBT_ALL, &block), D3DERR_INVALIDCALL);
    IDirect3DTexture9* texture = nullptr;
    EXPECT_EQ(device->CreateTexture(0, 4, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, &texture, nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(device->CreateTexture(4, 8193, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, &texture, nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(device->CreateTexture(4, 4, 1, 0, D3DFMT_R3G3B2, D3DPOOL_MANAGED, &texture, nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(texture, nullptr);
}
