#include "platform/headless/d3d9/FrameFile.h"

#include "platform/WalkedFile.h"
#include "tests/platform/d3d9/DeviceTestFixture.h"
#include "tests/support/ScratchDirectory.h"

#include <cstdlib>
#include <d3dx9.h>
#include <filesystem>
#include <unistd.h>

using namespace headless;

namespace {

/// The current directory before any test left it.
const std::filesystem::path kStartOfTests = std::filesystem::current_path();

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

    /// The lower right pixel of a picture file.
    uint32_t LastPixel(const std::string& path)
    {
        Com<IDirect3DTexture9> texture;
        D3DXIMAGE_INFO info = {};
        EXPECT_EQ(D3DXCreateTextureFromFileExA(device.Get(), path.c_str(), D3DX_DEFAULT_NONPOW2,
                                               D3DX_DEFAULT_NONPOW2, 1, 0, D3DFMT_A8R8G8B8,
                                               D3DPOOL_MANAGED, D3DX_FILTER_NONE, D3DX_FILTER_NONE,
                                               0, &info, nullptr, texture.Out()),
                  D3D_OK);
        D3DLOCKED_RECT locked = {};
        const RECT last = {static_cast<LONG>(info.Width) - 1, static_cast<LONG>(info.Height) - 1,
                           static_cast<LONG>(info.Width), static_cast<LONG>(info.Height)};
        if (!texture || FAILED(texture->LockRect(0, &locked, &last, D3DLOCK_READONLY)))
            return 0;
        const uint32_t pixel = *static_cast<const uint32_t*>(locked.pBits);
        EXPECT_EQ(texture->UnlockRect(0), D3D_OK);
        return pixel;
    }

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

TEST(FramePath, KeepsDirectoriesAndNoOtherSeparators)
{
    EXPECT_EQ(FramePath("", "boat"), "boat.png");
    EXPECT_EQ(FramePath("deck/below/", "boat"), "deck/below/boat.png");
    EXPECT_EQ(FramePath("a\\b/c\n/", "x/y"), "a_b/c_/x_y.png");
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

    EXPECT_EQ(LastPixel(path), 0xFF204060u);
}

/// An inverted ramp: 0xFF - 0x20, 0xFF - 0x40, 0xFF - 0x60. The picture itself does not change.
TEST_F(FrameFileTest, FullScreenFramesGoThroughTheGammaRamp)
{
    parameters.Windowed = FALSE;
    parameters.BackBufferWidth = 640;
    parameters.BackBufferHeight = 480;
    ASSERT_EQ(device->Reset(&parameters), D3D_OK);
    D3DGAMMARAMP ramp = {};
    for (WORD i = 0; i < 256; ++i)
        ramp.red[i] = ramp.green[i] = ramp.blue[i] = static_cast<WORD>(65535 - i * 257);
    device->SetGammaRamp(0, D3DSGR_NO_CALIBRATION, &ramp);
    SetWindowTextA(window.Get(), "ramp");
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0x00204060, 1.0f, 0), D3D_OK);
    ASSERT_EQ(Present(), D3D_OK);
    EXPECT_EQ(LastPixel((scratch.Path() / "ramp.png").string()), 0xFFDFBF9Fu);
    EXPECT_EQ(ReadBackBuffer().back(), 0x204060u);
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

TEST_F(FrameFileTest, TheConvertedFileSetsTheDirectories)
{
    SetWindowTextA(window.Get(), "boat.qsa");
    {
        WalkedFile file("scenes/", "deck/below/", "boat.qsa");
        ASSERT_EQ(Present(), D3D_OK);
        file.Converted();
    }
    EXPECT_TRUE(scratch.Has("deck/below/boat.qsa.png"));
    EXPECT_FALSE(scratch.Has("boat.qsa.png"));
    ASSERT_EQ(Present(), D3D_OK);
    EXPECT_TRUE(scratch.Has("boat.qsa.png")) << "no file is in hand any more";
}

TEST_F(FrameFileTest, AMissingDirectoryIsCreated)
{
    setenv("QSA2QSB_FRAMES", (scratch.Path() / "some" / "frames").c_str(), 1);
    EXPECT_EQ(Present(), D3D_OK);
    EXPECT_TRUE(scratch.Has("some/frames/Device test.png"));
}

TEST_F(FrameFileTest, ARelativeDirectoryStartsWhereTheProgramStarted)
{
    // By now the test has changed to its scratch folder.
    const std::string name = "frames-of-" + std::to_string(getpid());
    setenv("QSA2QSB_FRAMES", name.c_str(), 1);
    EXPECT_EQ(Present(), D3D_OK);
    EXPECT_FALSE(scratch.Has(name));
    const std::filesystem::path made = kStartOfTests / name;
    EXPECT_TRUE(std::filesystem::exists(made / "Device test.png"));
    std::filesystem::remove_all(made);
}

TEST_F(FrameFileTest, AFrameThatCannotBeWrittenDoesNotStopTheProgram)
{
    scratch.Write("file", "in the way");
    setenv("QSA2QSB_FRAMES", (scratch.Path() / "file").c_str(), 1);
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
