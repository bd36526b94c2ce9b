// What a frame takes over from earlier files of the same run.

#include "app/Options.h"
#include "tests/app/FrameScene.h"
#include "tests/app/WindowFlags.h"
#include "tests/support/ScratchDirectory.h"
#include "tools/frames/FrameStage.h"

#include <gtest/gtest.h>

#include <string>

using namespace frame_scene;

namespace {

/// Three fifths of (200, 100, 40) are (120, 60, 24).
constexpr uint32_t kThreeFifths = 0x99C86428;

class BatchFrame : public testing::Test {
protected:
    BatchFrame()
    {
        scratch.Write("thin.tga", Tga(4, [](unsigned, unsigned) { return kThreeFifths; }));
        scratch.Write("solid.tga",
                      Tga(4, [](unsigned, unsigned) { return kThreeFifths | 0xFF000000; }));
    }
    ~BatchFrame() override { gLightingOn = 1; }

    /// The colour in the middle of a scene's frame, or far from it on the left.
    static uint32_t Middle(FrameStage& stage, const char* name, int aside = 0)
    {
        gLightingOn = 0; // so that surfaces have the colours of their pictures
        const Frame frame = stage.Draw(name);
        return frame.pixels.empty() ? 0 : frame.pixels[60 * 160 + 80 + static_cast<size_t>(aside)];
    }
    static void ExpectColor(uint32_t color, int red, int green, int blue, const char* what)
    {
        EXPECT_NEAR(color >> 16 & 0xFF, red, 1) << what;
        EXPECT_NEAR(color >> 8 & 0xFF, green, 1) << what;
        EXPECT_NEAR(color & 0xFF, blue, 1) << what;
    }

    const WindowFlags flags;
    const ScratchDirectory scratch;
};

} // namespace

// The device starts without blending; the banner of the first frame leaves it on. A picture's own
// alpha does not make a material transparent, so it is drawn with whatever was set before. The
// background is black.
TEST_F(BatchFrame, QuirkAlphaOfAPictureBlendsFromTheSecondFileOn)
{
    scratch.Write("thin.qsa", Wall(Map("DIFFUSE", "thin.tga")));
    scratch.Write("solid.qsa", Wall(Map("DIFFUSE", "solid.tga")));
    FrameStage stage(160, 120);
    ExpectColor(Middle(stage, "thin.qsa"), 200, 100, 40, "first");
    ExpectColor(Middle(stage, "thin.qsa"), 120, 60, 24, "second");
    ExpectColor(Middle(stage, "thin.qsa"), 120, 60, 24, "third");
    ExpectColor(Middle(stage, "solid.qsa"), 200, 100, 40, "without alpha nothing is blended");
}

// Under a background picture nothing is cleared. Two fifths of the frame before stay: (51, 102, 153) of that
// are (20, 41, 61).
TEST_F(BatchFrame, QuirkFrameBeforeShowsThroughTheAlphaOfABackgroundPicture)
{
    constexpr int kBesideTheWall = -70;
    const char* const kThin = "*SCENE_ENVMAP { *BITMAP \"thin.tga\" }";
    const char* const kSolid = "*SCENE_ENVMAP { *BITMAP \"solid.tga\" }";
    scratch.Write("plain.qsa", Wall("", "", "*SCENE_BACKGROUND_STATIC 0.2 0.4 0.6"));
    scratch.Write("thin.qsa", Wall("", "", kThin));
    scratch.Write("solid.qsa", Wall("", "", kSolid));
    {
        FrameStage alone(160, 120);
        ExpectColor(Middle(alone, "thin.qsa", kBesideTheWall), 200, 100, 40, "alone");
    }
    FrameStage stage(160, 120);
    ExpectColor(Middle(stage, "plain.qsa", kBesideTheWall), 51, 102, 153, "the file before");
    ExpectColor(Middle(stage, "thin.qsa", kBesideTheWall), 140, 101, 85, "behind it");
    ExpectColor(Middle(stage, "solid.qsa", kBesideTheWall), 200, 100, 40, "without alpha");
}
