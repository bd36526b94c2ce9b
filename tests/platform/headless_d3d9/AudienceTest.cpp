// What the device does while nobody looks at what it draws.

#include "platform/headless/d3d9/Audience.h"

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/Device.h"

#include "tests/platform/headless_d3d9/DrawFixture.h"

#include <iterator>
#include <random>

using namespace headless;

namespace {

class AudienceTest : public DrawTest {
protected:
    void TearDown() override
    {
        RecallAudience();
        DrawTest::TearDown();
    }

    Com<IDirect3DSurface9> LockableTarget()
    {
        Com<IDirect3DSurface9> surface;
        EXPECT_EQ(device->CreateRenderTarget(kSide, kSide, D3DFMT_A8R8G8B8, D3DMULTISAMPLE_NONE, 0,
                                             TRUE, surface.Out(), nullptr),
                  D3D_OK);
        return surface;
    }

    HRESULT Lock(IDirect3DSurface9* surface)
    {
        D3DLOCKED_RECT locked;
        const HRESULT result = surface->LockRect(&locked, nullptr, D3DLOCK_READONLY);
        if (SUCCEEDED(result))
            surface->UnlockRect();
        return result;
    }

    HRESULT ReadBack(IDirect3DSurface9* surface)
    {
        const Com<IDirect3DSurface9> memory = SystemSurface(kSide, kSide);
        return device->GetRenderTargetData(surface, memory.Get());
    }
};

/// One draw with random states, some of them not modelled or not defined, and places that may not
/// exist. Returns what the device answers and says.
class WatchedDraw {
public:
    WatchedDraw(IDirect3DDevice9& drawnOn, unsigned seed) : device(drawnOn), random(seed) {}

    std::string Answer()
    {
        static constexpr D3DRENDERSTATETYPE kStates[] = {
            D3DRS_ZENABLE,      D3DRS_FILLMODE,  D3DRS_SHADEMODE,        D3DRS_CULLMODE,
            D3DRS_ZFUNC,        D3DRS_ALPHAFUNC, D3DRS_ALPHABLENDENABLE, D3DRS_SRCBLEND,
            D3DRS_DESTBLEND,    D3DRS_BLENDOP,   D3DRS_STENCILENABLE,    D3DRS_WRAP0,
            D3DRS_FOGTABLEMODE, D3DRS_LASTPIXEL, D3DRS_VERTEXBLEND,      D3DRS_SCISSORTESTENABLE};
        static constexpr D3DTEXTURESTAGESTATETYPE kStageStates[] = {
            D3DTSS_COLOROP, D3DTSS_COLORARG1, D3DTSS_ALPHAOP, D3DTSS_TEXCOORDINDEX,
            D3DTSS_RESULTARG};
        const QuietRefusals quiet;
        for (const D3DRENDERSTATETYPE state : kStates)
            device.SetRenderState(state, state == D3DRS_ZFUNC || state == D3DRS_ALPHAFUNC ? 8 : 1);
        for (const D3DRENDERSTATETYPE state : {D3DRS_STENCILENABLE, D3DRS_WRAP0, D3DRS_VERTEXBLEND})
            device.SetRenderState(state, 0);
        for (int i = Below(3); i > 0; --i)
            device.SetRenderState(kStates[Below(std::size(kStates))], static_cast<DWORD>(Below(7)));
        for (DWORD stage = 0; stage < 3; ++stage) {
            for (const D3DTEXTURESTAGESTATETYPE state : kStageStates)
                device.SetTextureStageState(stage, state,
                                            stage == 0 || state != D3DTSS_COLOROP ? 1 : 4);
            device.SetTextureStageState(stage, D3DTSS_TEXCOORDINDEX, 0);
        }
        for (int i = Below(3); i > 0; --i)
            device.SetTextureStageState(static_cast<DWORD>(Below(3)),
                                        kStageStates[Below(std::size(kStageStates))],
                                        static_cast<DWORD>(Below(30)));
        const D3DVIEWPORT9 viewport = {
            static_cast<DWORD>(Below(8)), 0, static_cast<DWORD>(Below(9)), 8, 0.0f, 1.0f};
        std::string answer = std::to_string(device.SetViewport(&viewport)) + ' ';
        device.SetFVF(Below(20) == 0 ? 0 : ScreenVertex::kFormat);
        answer += std::to_string(Draw()) + ' ' + std::to_string(Clear());
        return answer + ' ' + LastRefusal();
    }

private:
    int Below(size_t limit) { return static_cast<int>(random() % limit); }

    HRESULT Draw()
    {
        const std::vector<ScreenVertex> vertices(6);
        const auto type = static_cast<D3DPRIMITIVETYPE>(Below(8));
        const auto count = static_cast<UINT>(Below(3));
        if (Below(2) == 0)
            return device.DrawPrimitiveUP(type, count, vertices.data(), sizeof(ScreenVertex));
        WORD indices[6];
        for (WORD& index : indices)
            index = static_cast<WORD>(Below(7)); // one past the end
        return device.DrawIndexedPrimitiveUP(D3DPT_TRIANGLELIST, 0, 6, 2, indices, D3DFMT_INDEX16,
                                             vertices.data(), sizeof(ScreenVertex));
    }

    HRESULT Clear()
    {
        return device.Clear(0, nullptr, static_cast<DWORD>(Below(9)), 0,
                            static_cast<float>(Below(4)) * 0.5f, 0);
    }

    IDirect3DDevice9& device;
    std::minstd_rand random;
};

} // namespace

TEST_F(AudienceTest, PicturesAreDrawnUntilItIsDismissed)
{
    FillAll(0xFF123456);
    DismissAudience();
    EXPECT_EQ(Pixel(0, 0), 0xFF123456u); // drawn before
    FillAll(0xFF654321);
    RecallAudience();
    EXPECT_EQ(ReadBack(target.Get()), D3DERR_INVALIDCALL); // blank for good
}

TEST_F(AudienceTest, ReadingABlankPictureIsRefusedByName)
{
    const Com<IDirect3DSurface9> lockable = LockableTarget();
    ASSERT_EQ(Lock(lockable.Get()), D3D_OK);
    ASSERT_EQ(device->SetRenderTarget(0, lockable.Get()), D3D_OK);
    DismissAudience();
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0), D3D_OK);
    const QuietRefusals quiet;
    EXPECT_EQ(Lock(lockable.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(LastRefusal(), "Reading a picture without an audience()");
    EXPECT_EQ(ReadBack(lockable.Get()), D3DERR_INVALIDCALL);
    ASSERT_EQ(device->SetRenderTarget(0, target.Get()), D3D_OK);
}

TEST_F(AudienceTest, PicturesThatNothingWasDrawnIntoStayReadable)
{
    DismissAudience();
    const Com<IDirect3DSurface9> lockable = LockableTarget();
    EXPECT_EQ(Lock(lockable.Get()), D3D_OK);
    EXPECT_EQ(ReadBack(lockable.Get()), D3D_OK);
    IDirect3DTexture9* texture = BindTexels(0, 2, 1, {0xFF0000FF, 0xFF00FF00});
    FillAll();
    D3DLOCKED_RECT locked;
    ASSERT_EQ(texture->LockRect(0, &locked, nullptr, 0), D3D_OK);
    EXPECT_EQ(*static_cast<uint32_t*>(locked.pBits), 0xFF0000FFu);
    texture->UnlockRect(0);
}

TEST_F(AudienceTest, ACopyOfABlankPictureIsBlank)
{
    const Com<IDirect3DSurface9> copy = LockableTarget();
    const Com<IDirect3DSurface9> scaled = LockableTarget();
    DismissAudience();
    FillAll();
    ASSERT_EQ(device->StretchRect(target.Get(), nullptr, copy.Get(), nullptr, D3DTEXF_NONE),
              D3D_OK);
    const RECT part = {0, 0, 4, 4};
    ASSERT_EQ(device->StretchRect(copy.Get(), &part, scaled.Get(), nullptr, D3DTEXF_LINEAR),
              D3D_OK);
    const QuietRefusals quiet;
    EXPECT_EQ(Lock(copy.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(Lock(scaled.Get()), D3DERR_INVALIDCALL);
}

TEST_F(AudienceTest, TheScreenIsBlankAfterABlankPictureIsShown)
{
    D3DDISPLAYMODE mode;
    ASSERT_EQ(device->GetDisplayMode(0, &mode), D3D_OK);
    const Com<IDirect3DSurface9> screen = SystemSurface(mode.Width, mode.Height);
    Com<IDirect3DSurface9> back;
    ASSERT_EQ(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, back.Out()), D3D_OK);
    ASSERT_EQ(device->EndScene(), D3D_OK);
    ASSERT_EQ(device->Present(nullptr, nullptr, nullptr, nullptr), D3D_OK);
    EXPECT_EQ(device->GetFrontBufferData(0, screen.Get()), D3D_OK);
    DismissAudience();
    ASSERT_EQ(device->SetRenderTarget(0, back.Get()), D3D_OK);
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0), D3D_OK);
    ASSERT_EQ(device->Present(nullptr, nullptr, nullptr, nullptr), D3D_OK);
    {
        const QuietRefusals quiet;
        EXPECT_EQ(device->GetFrontBufferData(0, screen.Get()), D3DERR_INVALIDCALL);
    }
    ASSERT_EQ(device->SetRenderTarget(0, target.Get()), D3D_OK);
    ASSERT_EQ(device->BeginScene(), D3D_OK);
}

TEST_F(AudienceTest, EveryCallIsAnsweredAsWithAnAudience)
{
    int refused = 0, accepted = 0;
    BindTexels(0, 2, 1, {0xFF0000FF, 0xFF00FF00});
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        const std::string withAudience = WatchedDraw(*device.Get(), seed).Answer();
        DismissAudience();
        const std::string without = WatchedDraw(*device.Get(), seed).Answer();
        RecallAudience();
        ASSERT_EQ(without, withAudience) << seed;
        (withAudience.back() == ')' ? refused : accepted) += 1;
    }
    EXPECT_GT(refused, 200);
    EXPECT_GT(accepted, 200);
}
