#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <functional>

using namespace headless;

namespace {

using DeviceUnmodelledTest = DeviceTest;

struct Call {
    const char* name;
    std::function<HRESULT()> call;
};

struct Creation {
    const char* name;
    std::function<HRESULT()> call;
    std::function<bool()> handedOutNothing;
};

/// Makes the call with its output captured; true if it failed and was counted under its name.
bool FailsByName(const char* name, const std::function<HRESULT()>& call)
{
    const int before = UnmodelledCallCount(name);
    testing::internal::CaptureStderr();
    const HRESULT result = call();
    testing::internal::GetCapturedStderr();
    return result == D3DERR_INVALIDCALL && UnmodelledCallCount(name) == before + 1;
}

/// A non-null pointer that no call may dereference.
template <class Interface>
Interface* Untouchable()
{
    static DWORD nothing = 0;
    return reinterpret_cast<Interface*>(&nothing);
}

} // namespace

TEST_F(DeviceUnmodelledTest, EachCallFailsUnderItsOwnName)
{
    UINT palette = 0;
    D3DRASTER_STATUS raster = {};
    float floats[4] = {};
    const Call calls[] = {
        {"SetCursorProperties", [&] { return device->SetCursorProperties(0, 0, nullptr); }},
        {"GetRasterStatus", [&] { return device->GetRasterStatus(0, &raster); }},
        {"SetDialogBoxMode", [&] { return device->SetDialogBoxMode(TRUE); }},
        {"SetPaletteEntries", [&] { return device->SetPaletteEntries(0, nullptr); }},
        {"GetPaletteEntries", [&] { return device->GetPaletteEntries(0, nullptr); }},
        {"SetCurrentTexturePalette", [&] { return device->SetCurrentTexturePalette(0); }},
        {"GetCurrentTexturePalette", [&] { return device->GetCurrentTexturePalette(&palette); }},
        {"ProcessVertices", [&] { return device->ProcessVertices(0, 0, 1, nullptr, nullptr, 0); }},
        {"DrawRectPatch", [&] { return device->DrawRectPatch(1, floats, nullptr); }},
        {"DrawTriPatch", [&] { return device->DrawTriPatch(1, floats, nullptr); }},
        {"DeletePatch", [&] { return device->DeletePatch(1); }},
        {"SetVertexDeclaration",
         [&] { return device->SetVertexDeclaration(Untouchable<IDirect3DVertexDeclaration9>()); }},
        {"SetCursorPosition",
         [&] {
             device->SetCursorPosition(1, 1, 0); // has no result
             return D3DERR_INVALIDCALL;
         }},
    };
    for (const Call& c : calls)
        EXPECT_TRUE(FailsByName(c.name, c.call)) << c.name;
}

TEST_F(DeviceUnmodelledTest, ObjectsThatCannotBeCreatedAreNull)
{
    auto* chain = Untouchable<IDirect3DSwapChain9>();
    auto* block = Untouchable<IDirect3DStateBlock9>();
    auto* declaration = Untouchable<IDirect3DVertexDeclaration9>();
    auto* shader = Untouchable<IDirect3DPixelShader9>();
    auto* otherChain = Untouchable<IDirect3DSwapChain9>();
    const D3DVERTEXELEMENT9 elements[1] = {};
    const DWORD code[] = {0xFFFF0101, 0x0000FFFF};
    const Creation creations[] = {
        {"CreateAdditionalSwapChain",
         [&] { return device->CreateAdditionalSwapChain(nullptr, &chain); },
         [&] { return chain == nullptr; }},
        {"GetSwapChain", [&] { return device->GetSwapChain(1, &otherChain); },
         [&] { return otherChain == nullptr; }},
        {"EndStateBlock", [&] { return device->EndStateBlock(&block); },
         [&] { return block == nullptr; }},
        {"CreateVertexDeclaration",
         [&] { return device->CreateVertexDeclaration(elements, &declaration); },
         [&] { return declaration == nullptr; }},
        {"CreatePixelShader", [&] { return device->CreatePixelShader(code, &shader); },
         [&] { return shader == nullptr; }},
    };
    for (const Creation& c : creations) {
        EXPECT_TRUE(FailsByName(c.name, c.call)) << c.name;
        EXPECT_TRUE(c.handedOutNothing()) << c.name;
    }
}

TEST_F(DeviceUnmodelledTest, ShadersAndDeclarationsCanOnlyBeNull)
{
    EXPECT_EQ(device->SetVertexDeclaration(nullptr), D3D_OK);
    EXPECT_EQ(device->SetVertexShader(nullptr), D3D_OK);
    EXPECT_EQ(device->SetPixelShader(nullptr), D3D_OK);

    auto* declaration = Untouchable<IDirect3DVertexDeclaration9>();
    auto* vertexShader = Untouchable<IDirect3DVertexShader9>();
    auto* pixelShader = Untouchable<IDirect3DPixelShader9>();
    EXPECT_EQ(device->GetVertexDeclaration(&declaration), D3D_OK);
    EXPECT_EQ(device->GetVertexShader(&vertexShader), D3D_OK);
    EXPECT_EQ(device->GetPixelShader(&pixelShader), D3D_OK);
    EXPECT_EQ(declaration, nullptr);
    EXPECT_EQ(vertexShader, nullptr);
    EXPECT_EQ(pixelShader, nullptr);
    EXPECT_EQ(device->GetPixelShader(nullptr), D3DERR_INVALIDCALL);
}
