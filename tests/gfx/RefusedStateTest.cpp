#include "gfx/RefusedState.h"

#include <gtest/gtest.h>

#include <array>

#include "platform/ComPointer.h"
#include "tests/support/D3DNames.h"
#include "tests/support/TestDevice.h"

namespace {

/// A device that refuses draws as a test chooses.
class RefusedState : public testing::Test {
protected:
    DWORD Render(D3DRENDERSTATETYPE state)
    {
        DWORD value = 0;
        device->GetRenderState(state, &value);
        return value;
    }
    DWORD Stage(DWORD stage, D3DTEXTURESTAGESTATETYPE state)
    {
        DWORD value = 0;
        device->GetTextureStageState(stage, state, &value);
        return value;
    }
    DWORD Sampler(DWORD sampler, D3DSAMPLERSTATETYPE state)
    {
        DWORD value = 0;
        device->GetSamplerState(sampler, state, &value);
        return value;
    }
    /// The state found while draws fail as long as `isRefused` is true.
    template <class Test>
    std::string Found(const Test& isRefused)
    {
        return FindRefusedState(*device, kFormat,
                                [&] { return isRefused() ? D3DERR_INVALIDCALL : D3D_OK; });
    }

    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_NORMAL;
    TestDevice made{64, 48};
    IDirect3DDevice9* device = made.Device();
};

} // namespace

TEST_F(RefusedState, IsNamedWithItsValue)
{
    device->SetRenderState(D3DRS_STENCILENABLE, TRUE);
    device->SetRenderState(D3DRS_CULLMODE, D3DCULL_CW);
    EXPECT_EQ(Found([&] { return Render(D3DRS_STENCILENABLE) != 0; }), "D3DRS_STENCILENABLE = 1");
}

/// A state is put back to the value of a new device, whichever refuses the other values.
TEST_F(RefusedState, MayBeAnyWithAFixedSetOfValues)
{
    std::array<DWORD, 256> starts;
    for (DWORD number = 0; number < starts.size(); ++number)
        starts[number] = Render(static_cast<D3DRENDERSTATETYPE>(number));
    int named = 0;
    for (DWORD number = 0; number < starts.size(); ++number) {
        const auto state = static_cast<D3DRENDERSTATETYPE>(number);
        const std::string name = RenderStateName(state);
        const DWORD start = starts[number];
        if (!name.starts_with("D3DRS_") || FAILED(device->SetRenderState(state, start + 1)))
            continue;
        const std::string found = Found([&] { return Render(state) != start; });
        if (!found.empty()) { // else it takes any number
            ++named;
            EXPECT_EQ(found, name + " = " + std::to_string(start + 1));
        }
        device->SetRenderState(state, start);
    }
    EXPECT_EQ(named, 70)
        << "all but D3DRS_ZENABLE, whose first value depends on how the device was made";
}

TEST_F(RefusedState, IsNotTheOneThatSwitchesItOn)
{
    device->SetRenderState(D3DRS_ALPHABLENDENABLE, TRUE);
    device->SetRenderState(D3DRS_BLENDOP, D3DBLENDOP_MAX);
    const auto isRefused = [&] {
        return Render(D3DRS_ALPHABLENDENABLE) != 0 && Render(D3DRS_BLENDOP) == D3DBLENDOP_MAX;
    };
    EXPECT_EQ(Found(isRefused), "D3DRS_BLENDOP = 5");
}

TEST_F(RefusedState, OfAStageHasTheStagesNumber)
{
    for (DWORD stage = 0; stage < 3; ++stage)
        device->SetTextureStageState(stage, D3DTSS_COLOROP, D3DTOP_MODULATE);
    device->SetTextureStageState(1, D3DTSS_COLORARG2, D3DTA_SPECULAR);
    const auto isRefused = [&] {
        return Stage(0, D3DTSS_COLOROP) != D3DTOP_DISABLE &&
               Stage(1, D3DTSS_COLOROP) != D3DTOP_DISABLE &&
               Stage(1, D3DTSS_COLORARG2) == D3DTA_SPECULAR;
    };
    EXPECT_EQ(Found(isRefused), "D3DTSS_COLORARG2[1] = 4");
}

TEST_F(RefusedState, MayBeTheOperationOfALaterStage)
{
    device->SetTextureStageState(0, D3DTSS_COLOROP, D3DTOP_MODULATE);
    device->SetTextureStageState(1, D3DTSS_COLOROP, D3DTOP_LERP);
    const auto isRefused = [&] {
        return Stage(0, D3DTSS_COLOROP) != D3DTOP_DISABLE &&
               Stage(1, D3DTSS_COLOROP) == D3DTOP_LERP;
    };
    EXPECT_EQ(Found(isRefused), "D3DTSS_COLOROP[1] = 26");
}

TEST_F(RefusedState, OfASamplerHasTheSamplersNumber)
{
    device->SetSamplerState(2, D3DSAMP_SRGBTEXTURE, TRUE);
    EXPECT_EQ(Found([&] { return Sampler(2, D3DSAMP_SRGBTEXTURE) != 0; }),
              "D3DSAMP_SRGBTEXTURE[2] = 1");
}

TEST_F(RefusedState, MayBeATexture)
{
    ComPointer<IDirect3DTexture9> texture;
    ASSERT_EQ(
        device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.Out(), nullptr),
        D3D_OK);
    device->SetTexture(1, texture.Get());
    const auto isRefused = [&] {
        ComPointer<IDirect3DBaseTexture9> bound;
        device->GetTexture(1, bound.Out());
        return static_cast<bool>(bound);
    };
    EXPECT_EQ(Found(isRefused), "Texture[1]");
}

TEST_F(RefusedState, MayBeTheVertexFormat)
{
    device->SetFVF(D3DFVF_XYZRHW); // 4
    const auto isRefused = [&] {
        DWORD format = 0;
        device->GetFVF(&format);
        return format != kFormat;
    };
    EXPECT_EQ(Found(isRefused), "FVF = 4");
}

TEST_F(RefusedState, IsTheLastOfSeveral)
{
    device->SetRenderState(D3DRS_WRAP0, 1);
    device->SetRenderState(D3DRS_WRAP3, 2);
    EXPECT_EQ(Found([&] { return Render(D3DRS_WRAP0) != 0 || Render(D3DRS_WRAP3) != 0; }),
              "D3DRS_WRAP3 = 2");
}

TEST_F(RefusedState, IsNoneIfNoStateHelpsOrTheSecondTrySucceeds)
{
    device->SetRenderState(D3DRS_STENCILENABLE, TRUE);
    EXPECT_EQ(Found([] { return true; }), "");
    EXPECT_EQ(Found([] { return false; }), "");
}
