#include "platform/headless/d3d9/PresentParameters.h"

#include "tests/platform/d3d9/DeviceTestFixture.h"

using namespace headless;

namespace {

D3DPRESENT_PARAMETERS FullScreen(UINT width, UINT height, D3DFORMAT format)
{
    D3DPRESENT_PARAMETERS parameters = WindowedParameters(nullptr);
    parameters.Windowed = FALSE;
    parameters.BackBufferWidth = width;
    parameters.BackBufferHeight = height;
    parameters.BackBufferFormat = format;
    return parameters;
}

HRESULT Complete(D3DPRESENT_PARAMETERS parameters, HWND window)
{
    return CompletePresentParameters(parameters, window);
}

} // namespace

TEST(PresentParameters, AWindowFillsInWhatIsLeftOut)
{
    const TestWindow window(300, 200);
    D3DPRESENT_PARAMETERS parameters = WindowedParameters(nullptr);
    parameters.BackBufferWidth = parameters.BackBufferHeight = parameters.BackBufferCount = 0;
    parameters.BackBufferFormat = D3DFMT_UNKNOWN;
    ASSERT_EQ(CompletePresentParameters(parameters, window.Get()), D3D_OK);
    EXPECT_EQ(parameters.BackBufferWidth, 300u);
    EXPECT_EQ(parameters.BackBufferHeight, 200u);
    EXPECT_EQ(parameters.BackBufferCount, 1u);
    EXPECT_EQ(parameters.BackBufferFormat, D3DFMT_X8R8G8B8);
}

TEST(PresentParameters, AWindowWithoutAnAreaCannotBePresentedTo)
{
    const TestWindow window(300, 0);
    D3DPRESENT_PARAMETERS parameters = WindowedParameters(window.Get());
    parameters.BackBufferHeight = 0;
    EXPECT_EQ(CompletePresentParameters(parameters, nullptr), D3DERR_INVALIDCALL);
}

TEST(PresentParameters, FullScreenTakesTheModesOfTheAdapter)
{
    const TestWindow window(300, 200);
    EXPECT_EQ(Complete(FullScreen(1024, 768, D3DFMT_X8R8G8B8), window.Get()), D3D_OK);
    EXPECT_EQ(Complete(FullScreen(640, 480, D3DFMT_R5G6B5), window.Get()), D3D_OK);
    EXPECT_EQ(Complete(FullScreen(641, 480, D3DFMT_R5G6B5), window.Get()), D3DERR_NOTAVAILABLE);
    EXPECT_EQ(Complete(FullScreen(640, 480, D3DFMT_DXT1), window.Get()), D3DERR_INVALIDCALL);
    D3DPRESENT_PARAMETERS parameters = FullScreen(640, 480, D3DFMT_X8R8G8B8);
    parameters.FullScreen_RefreshRateInHz = 60;
    EXPECT_EQ(Complete(parameters, window.Get()), D3D_OK);
    parameters.FullScreen_RefreshRateInHz = 75;
    EXPECT_EQ(Complete(parameters, window.Get()), D3DERR_NOTAVAILABLE);
}

TEST(PresentParameters, LongIntervalsAreForFullScreen)
{
    const TestWindow window(300, 200);
    D3DPRESENT_PARAMETERS full = FullScreen(640, 480, D3DFMT_X8R8G8B8);
    D3DPRESENT_PARAMETERS windowed = WindowedParameters(window.Get());
    static const struct {
        UINT interval;
        HRESULT full, windowed;
    } cases[] = {
        {D3DPRESENT_INTERVAL_DEFAULT, D3D_OK, D3D_OK},
        {D3DPRESENT_INTERVAL_IMMEDIATE, D3D_OK, D3D_OK},
        {D3DPRESENT_INTERVAL_ONE, D3D_OK, D3D_OK},
        {D3DPRESENT_INTERVAL_TWO, D3D_OK, D3DERR_INVALIDCALL},
        {D3DPRESENT_INTERVAL_FOUR, D3D_OK, D3DERR_INVALIDCALL},
        {3, D3DERR_INVALIDCALL, D3DERR_INVALIDCALL},
    };
    for (const auto& c : cases) {
        full.PresentationInterval = windowed.PresentationInterval = c.interval;
        EXPECT_EQ(Complete(full, window.Get()), c.full) << c.interval;
        EXPECT_EQ(Complete(windowed, window.Get()), c.windowed) << c.interval;
    }
}

TEST(PresentParameters, RefusesMoreThanOneBackBufferAndMultiSampling)
{
    const TestWindow window(300, 200);
    D3DPRESENT_PARAMETERS parameters = WindowedParameters(window.Get());
    parameters.BackBufferCount = 2;
    EXPECT_EQ(Complete(parameters, nullptr), D3DERR_INVALIDCALL);
    parameters = WindowedParameters(window.Get());
    parameters.MultiSampleType = D3DMULTISAMPLE_2_SAMPLES;
    EXPECT_EQ(Complete(parameters, nullptr), D3DERR_INVALIDCALL);
    parameters = WindowedParameters(nullptr);
    EXPECT_EQ(Complete(parameters, nullptr), D3DERR_INVALIDCALL) << "no window at all";
    parameters = WindowedParameters(window.Get());
    parameters.BackBufferWidth = 8193;
    EXPECT_EQ(Complete(parameters, nullptr), D3DERR_INVALIDCALL) << "too large";
}
