#include <d3dx9.h>
#include <dxerr9.h>

#include <gtest/gtest.h>

TEST(ErrorNames, AreThoseOfTheHeaders)
{
    static const struct {
        HRESULT result;
        const char* name;
    } cases[] = {
        {S_OK, "S_OK"},
        {D3DERR_INVALIDCALL, "D3DERR_INVALIDCALL"},
        {D3DERR_DEVICELOST, "D3DERR_DEVICELOST"},
        {D3DERR_DEVICENOTRESET, "D3DERR_DEVICENOTRESET"},
        {D3DERR_NOTAVAILABLE, "D3DERR_NOTAVAILABLE"},
        {D3DERR_OUTOFVIDEOMEMORY, "D3DERR_OUTOFVIDEOMEMORY"},
        {D3DERR_NOTFOUND, "D3DERR_NOTFOUND"},
        {D3DXERR_INVALIDDATA, "D3DXERR_INVALIDDATA"},
        {D3DXERR_INVALIDMESH, "D3DXERR_INVALIDMESH"},
        {E_FAIL, "E_FAIL"},
        {E_NOTIMPL, "E_NOTIMPL"},
        {E_OUTOFMEMORY, "E_OUTOFMEMORY"},
        {static_cast<HRESULT>(0x8ABCDEF0), "Unknown"},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(DXGetErrorString9A(c.result), c.name);
        EXPECT_STREQ(DXGetErrorString9(c.result), c.name);
    }
}

TEST(ErrorNames, ComeWithADescription)
{
    EXPECT_STRNE(DXGetErrorDescription9A(D3DERR_INVALIDCALL), "");
    EXPECT_STRNE(DXGetErrorDescription9(D3DERR_DEVICELOST), "");
    EXPECT_STRNE(DXGetErrorDescription9A(D3DERR_DEVICELOST),
                 DXGetErrorDescription9A(D3DERR_INVALIDCALL));
}
