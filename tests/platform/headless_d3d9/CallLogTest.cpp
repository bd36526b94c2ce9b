#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <functional>

using namespace headless;

namespace {

using CallLogTest = DeviceTest;

struct UnmodelledCall {
    const char* name;
    const char* line; ///< what the log says the first time
    std::function<HRESULT()> call;
};

} // namespace

TEST_F(CallLogTest, CallsThatAreNotModelledFailAndAreLoggedOnce)
{
    IDirect3DQuery9* query = nullptr;
    IDirect3DStateBlock9* block = nullptr;
    IDirect3DVertexShader9* shader = nullptr;
    IDirect3DVertexDeclaration9* declaration = nullptr;
    const DWORD code[] = {0xFFFE0101, 0x0000FFFF};
    const UnmodelledCall calls[] = {
        {"CreateQuery", "UNMODELLED CreateQuery(9, pointer)\n",
         [&] { return device->CreateQuery(D3DQUERYTYPE_OCCLUSION, &query); }},
        {"CreateStateBlock", "UNMODELLED CreateStateBlock(1, pointer)\n",
         [&] { return device->CreateStateBlock(D3DSBT_ALL, &block); }},
        {"CreateVertexShader",
         "UNMODELLED CreateVertexShader(the position is not written completely)\n",
         [&] { return device->CreateVertexShader(code, &shader); }},
        {"CreateVertexDeclaration", "UNMODELLED CreateVertexDeclaration(null, pointer)\n",
         [&] { return device->CreateVertexDeclaration(nullptr, &declaration); }},
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
