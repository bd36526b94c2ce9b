#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <functional>

using namespace headless;

namespace {

using CallControlTest = DeviceTest;

struct UnmodelledCall {
    const char* name;
    const char* line; ///< what the log says the first time
    std::function<HRESULT()> call;
};

} // namespace

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
