#include "platform/headless/d3d9/FrameFile.h"

#include "tests/platform/d3d9/DeviceTestFixture.h"
#include "tests/support/ScratchDirectory.h"

#include <cstdlib>
#include <d3dx9.h>

namespace {

class FrameFileTest : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        setenv("QSA2QSB_FRAMES", scratch.Path().c_str(), 1);
    }

    void TearDown() override
    {
        unsetenv("QSA2QSB_FRAMES");
        DeviceTest::TearDown();
    }

    HRESULT Present() { return device->Present(nullptr, nullptr, nullptr, nullptr); }

    ScratchDirectory scratch;
};

} // namespace

TEST(FrameFileName, HoldsNoSeparatorsAndNoControlBytes)
{
    EXPECT_EQ(FrameFileName("boat"), "boat.png");
    EXPECT_EQ(FrameFileName("a/b\\c"), "a_b_c.png");
    EXPECT_EQ(FrameFileName("x\t\x7Fy\n"), "x__y_.png");
    EXPECT_EQ(FrameFileName("M\xFCller 100%"), "M\xFCller 100%.png");
    EXPECT_EQ(FrameFileName(""), "frame.png");
    EXPECT_EQ(FrameFileName(".."), "...png");
}

TEST_F(FrameFileTest, APresentedFrameIsKeptUnderTheWindowsTitle)
{
    SetWindowTextA(window.Get(), "scenes/boat.qsa");
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0x00204060, 1.0f, 0), D3D_OK);
    ASSERT_EQ(Present(), D3D_OK);
    const std::string path = (scratch.Path() / "scenes_boat.qsa.png").string();
    D3DXIMAGE_INFO info = {};
    ASSERT_EQ(D3DXGetImageInfoFromFileA(path.c_str(), &info), D3D_OK);
    EXPECT_EQ(info.Width, 64u);
    EXPECT_EQ(info.Height, 48u);
    EXPECT_EQ(info.ImageFileFormat, D3DXIFF_PNG);
    EXPECT_EQ(info.Format, D3DFMT_X8R8G8B8) << "frames are opaque";

    Com<IDirect3DTexture9> texture;
    ASSERT_EQ(D3DXCreateTextureFromFileExA(device.Get(), path.c_str(), 64, 48, 1, 0,
                                           D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, D3DX_FILTER_NONE,
                                           D3DX_FILTER_NONE, 0, nullptr, nullptr, texture.Out()),
              D3D_OK);
    D3DLOCKED_RECT locked = {};
    const RECT last = {63, 47, 64, 48};
    ASSERT_EQ(texture->LockRect(0, &locked, &last, D3DLOCK_READONLY), D3D_OK);
    EXPECT_EQ(*static_cast<const std::uint32_t*>(locked.pBits), 0xFF204060u);
    EXPECT_EQ(texture->UnlockRect(0), D3D_OK);
}

TEST_F(FrameFileTest, WithoutTheVariableNothingIsWritten)
{
    unsetenv("QSA2QSB_FRAMES");
    ASSERT_EQ(Present(), D3D_OK);
    EXPECT_FALSE(scratch.Has("Device test.png"));
    setenv("QSA2QSB_FRAMES", "", 1);
    ASSERT_EQ(Present(), D3D_OK);
    EXPECT_FALSE(scratch.Has("Device test.png"));
}

TEST_F(FrameFileTest, AFrameThatCannotBeWrittenDoesNotStopTheProgram)
{
    setenv("QSA2QSB_FRAMES", (scratch.Path() / "missing").c_str(), 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Present(), D3D_OK);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Frame not written to '"),
              std::string::npos);
}

TEST_F(FrameFileTest, TheWindowOfTheCallNamesTheFrame)
{
    const TestWindow other(100, 100, "other");
    ASSERT_EQ(device->Present(nullptr, nullptr, other.Get(), nullptr), D3D_OK);
    EXPECT_TRUE(scratch.Has("other.png"));
}
