#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <functional>

using namespace headless;

namespace {

class CallControlTest : public DeviceTest {
protected:
    void TearDown() override
    {
        EXPECT_EQ(ClearFailNextCalls(), 0) << "orders that no call took";
        DeviceTest::TearDown();
    }
};

struct OrderedCall {
    const char* name;
    std::function<HRESULT()> call;
};

struct UnmodelledCall {
    const char* name;
    const char* line; ///< what is logged the first time
    std::function<HRESULT()> call;
};

} // namespace

TEST_F(CallControlTest, OnlyTheNextCallFails)
{
    FailNextCall("BeginScene", D3DERR_DRIVERINTERNALERROR);
    EXPECT_EQ(device->BeginScene(), D3DERR_DRIVERINTERNALERROR);
    EXPECT_EQ(device->EndScene(), D3DERR_INVALIDCALL) << "the failed call did nothing";
    EXPECT_EQ(device->BeginScene(), D3D_OK);
    EXPECT_EQ(device->EndScene(), D3D_OK);
}

TEST_F(CallControlTest, OrdersForOneNameAreServedInTurn)
{
    FailNextCall("Present", D3DERR_DEVICELOST);
    FailNextCall("Present", D3DERR_DRIVERINTERNALERROR);
    const auto present = [this] { return device->Present(nullptr, nullptr, nullptr, nullptr); };
    EXPECT_EQ(present(), D3DERR_DEVICELOST);
    EXPECT_EQ(present(), D3DERR_DRIVERINTERNALERROR);
    EXPECT_EQ(present(), D3D_OK);
}

TEST_F(CallControlTest, OrdersCanBeForgotten)
{
    FailNextCall("Present", D3DERR_DEVICELOST);
    FailNextCall("Reset", D3DERR_DEVICELOST);
    EXPECT_EQ(ClearFailNextCalls(), 2);
    EXPECT_EQ(device->Present(nullptr, nullptr, nullptr, nullptr), D3D_OK);
}

TEST_F(CallControlTest, EveryKindOfCallCanBeOrderedToFail)
{
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    Com<IDirect3DVertexBuffer9> vertices;
    Com<IDirect3DSurface9> surface;
    ASSERT_EQ(device->CreateVertexBuffer(16, 0, 0, D3DPOOL_MANAGED, vertices.Out(), nullptr),
              D3D_OK);
    D3DDISPLAYMODE mode = {};
    D3DCAPS9 caps = {};
    D3DMATRIX matrix = {};
    D3DSURFACE_DESC desc = {};
    D3DLOCKED_RECT locked = {};
    D3DMATERIAL9 material = {};
    void* data = nullptr;
    DWORD value = 0;
    const OrderedCall calls[] = {
        {"GetAdapterDisplayMode", [&] { return d3d->GetAdapterDisplayMode(0, &mode); }},
        {"EnumAdapterModes", [&] { return d3d->EnumAdapterModes(0, D3DFMT_X8R8G8B8, 0, &mode); }},
        {"GetDeviceCaps", [&] { return d3d->GetDeviceCaps(0, D3DDEVTYPE_HAL, &caps); }},
        {"GetDeviceCaps", [&] { return device->GetDeviceCaps(&caps); }},
        {"TestCooperativeLevel", [&] { return device->TestCooperativeLevel(); }},
        {"SetTransform", [&] { return device->SetTransform(D3DTS_VIEW, &matrix); }},
        {"SetMaterial", [&] { return device->SetMaterial(&material); }},
        {"SetRenderState", [&] { return device->SetRenderState(D3DRS_LIGHTING, TRUE); }},
        {"GetRenderState", [&] { return device->GetRenderState(D3DRS_LIGHTING, &value); }},
        {"SetSamplerState",
         [&] { return device->SetSamplerState(0, D3DSAMP_MAGFILTER, D3DTEXF_POINT); }},
        {"SetTextureStageState",
         [&] { return device->SetTextureStageState(0, D3DTSS_COLOROP, D3DTOP_ADD); }},
        {"SetTexture", [&] { return device->SetTexture(0, texture.Get()); }},
        {"SetFVF", [&] { return device->SetFVF(D3DFVF_XYZ); }},
        {"LightEnable", [&] { return device->LightEnable(0, TRUE); }},
        {"Clear", [&] { return device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0); }},
        {"GetRenderTarget", [&] { return device->GetRenderTarget(0, surface.Out()); }},
        {"GetBackBuffer",
         [&] { return device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, surface.Out()); }},
        {"GetLevelDesc", [&] { return texture->GetLevelDesc(0, &desc); }},
        {"LockRect", [&] { return texture->LockRect(0, &locked, nullptr, 0); }},
        {"Lock", [&] { return vertices->Lock(0, 0, &data, 0); }},
    };
    for (const OrderedCall& c : calls) {
        FailNextCall(c.name, D3DERR_DRIVERINTERNALERROR);
        EXPECT_EQ(c.call(), D3DERR_DRIVERINTERNALERROR) << c.name;
        EXPECT_EQ(ClearFailNextCalls(), 0) << c.name;
        EXPECT_EQ(c.call(), D3D_OK) << c.name << " afterwards";
    }
    EXPECT_EQ(vertices->Unlock(), D3D_OK);
    EXPECT_EQ(texture->UnlockRect(0), D3D_OK);
    EXPECT_EQ(device->SetTexture(0, nullptr), D3D_OK);
}

TEST_F(CallControlTest, AFailedCreationHandsNothingOut)
{
    FailNextCall("CreateTexture", D3DERR_OUTOFVIDEOMEMORY);
    Com<IDirect3DTexture9> texture;
    EXPECT_EQ(
        device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.Out(), nullptr),
        D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_FALSE(texture);
}

TEST_F(CallControlTest, CallsThatAreNotModelledFailAndAreLoggedOnce)
{
    IDirect3DQuery9* query = nullptr;
    IDirect3DStateBlock9* block = nullptr;
    IDirect3DVertexShader9* shader = nullptr;
    IDirect3DCubeTexture9* cube = nullptr;
    const DWORD code[] = {0xFFFE0101, 0x0000FFFF};
    const UnmodelledCall calls[] = {
        {"CreateQuery", "UNMODELLED CreateQuery(9, pointer)\n",
         [&] { return device->CreateQuery(D3DQUERYTYPE_OCCLUSION, &query); }},
        {"CreateStateBlock", "UNMODELLED CreateStateBlock(1, pointer)\n",
         [&] { return device->CreateStateBlock(D3DSBT_ALL, &block); }},
        {"CreateVertexShader", "UNMODELLED CreateVertexShader(pointer, pointer)\n",
         [&] { return device->CreateVertexShader(code, &shader); }},
        {"CreateCubeTexture", "UNMODELLED CreateCubeTexture(8, 1, 0, 21, 1, pointer, null)\n",
         [&] {
             return device->CreateCubeTexture(8, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &cube,
                                              nullptr);
         }},
        {"SetNPatchMode", "UNMODELLED SetNPatchMode(2.000000)\n",
         [&] { return device->SetNPatchMode(2.0f); }},
        {"ShowCursor", "UNMODELLED ShowCursor(1)\n",
         [&] {
             device->ShowCursor(TRUE);
             return D3DERR_INVALIDCALL;
         }},
        {"BeginStateBlock", "UNMODELLED BeginStateBlock()\n",
         [&] { return device->BeginStateBlock(); }},
    };
    for (const UnmodelledCall& c : calls) {
        const int before = UnmodelledCallCount(c.name);
        testing::internal::CaptureStderr();
        EXPECT_EQ(c.call(), D3DERR_INVALIDCALL) << c.name;
        const std::string first = testing::internal::GetCapturedStderr();
        EXPECT_EQ(first, before == 0 ? c.line : "") << c.name;
        testing::internal::CaptureStderr();
        EXPECT_EQ(c.call(), D3DERR_INVALIDCALL) << c.name;
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << c.name;
        EXPECT_EQ(UnmodelledCallCount(c.name), before + 2) << c.name;
    }
}

TEST_F(CallControlTest, StatesThatDoNotExistAreRefused)
{
    DWORD value = 0;
    EXPECT_EQ(device->SetRenderState(static_cast<D3DRENDERSTATETYPE>(1), 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetRenderState(static_cast<D3DRENDERSTATETYPE>(999), &value),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetTextureStageState(8, D3DTSS_COLOROP, D3DTOP_ADD), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetSamplerState(16, D3DSAMP_MAGFILTER, D3DTEXF_POINT), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetSamplerState(0, static_cast<D3DSAMPLERSTATETYPE>(0), &value),
              D3DERR_INVALIDCALL);
    D3DMATRIX matrix = {};
    EXPECT_EQ(device->SetTransform(static_cast<D3DTRANSFORMSTATETYPE>(512), &matrix),
              D3DERR_INVALIDCALL);
}
