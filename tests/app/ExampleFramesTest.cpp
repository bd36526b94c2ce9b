// Draws the frame of each example, from its text and from its binary scene, and compares both with
// each other and with the accepted frame, which the system's Direct3D drew from the text and
// somebody has looked at. Each frame has its own engine, as in a process that draws nothing else.
// QSA_ACCEPT_PICTURES=1 accepts the drawn frames, on the Windows host only: a frame of this
// project's own rasterizer would prove nothing about it. Parts that Wine does not draw as
// documented, mainly skinned meshes, are not compared. Wine does not read effects in text form: both
// hosts draw the compiled ones.

#include "gfx/KRE_Gfx.h"
#include "tests/app/WindowFlags.h"
#include "tests/support/HostKind.h"
#include "tests/support/Picture.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"
#include "tools/frames/FrameExceptions.h"
#include "tools/frames/FrameStage.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <numbers>

struct ExampleFrame {
    const char* name;
    const char* folder; ///< below examples
};

namespace {

namespace fs = std::filesystem;

const fs::path kExamples = SourcePath("examples");
const fs::path kAccepted = SourcePath("tests/app/example_frames");

constexpr int kRounding = 2; // steps of a channel: normals and weights have 16 bits in a binary
constexpr size_t kPixels = 640 * 480; // of the frame

/// A folder with the examples, to convert one of them.
class ExampleFrames : public testing::TestWithParam<ExampleFrame> {
protected:
    ExampleFrames()
    {
        fs::copy(kExamples, scratch.Path() / "examples", fs::copy_options::recursive);
        fs::current_path(scratch.Path() / "examples" /
                         GetParam().folder); // the log is written there
    }
    ~ExampleFrames() override { fs::current_path(scratch.Path()); }

    /// Draws the example's text and writes its binary scene.
    static Frame DrawText()
    {
        FrameStage stage(640, 480);
        return stage.Draw(Name(".qsa").c_str(), Name(".qsb").c_str());
    }
    /// Draws the binary scene, once it exists.
    static Frame DrawBinary()
    {
        FrameStage stage(640, 480);
        return stage.Draw(Name(".qsb").c_str());
    }
    static std::string Name(const char* extension)
    {
        return std::string(GetParam().name) + extension;
    }

    static Frame ReadAccepted()
    {
        const FrameStage stage(640, 480);
        const Picture picture =
            ReadPngPicture(gGfx->device.Get(), (kAccepted / Name(".png")).string());
        Frame frame = {picture.width, picture.height, {}};
        for (const DWORD pixel : picture.pixels)
            frame.pixels.push_back(static_cast<uint32_t>(pixel));
        return frame;
    }
    static void ExpectAccepted(Frame frame, const char* what)
    {
        Frame expected = ReadAccepted();
        const auto exceptions = ReadFrameExceptions(SourcePath("tools/frames/exceptions.txt"));
        ASSERT_FALSE(exceptions.empty());
        BlankExceptions(frame, exceptions, GetParam().name);
        BlankExceptions(expected, exceptions, GetParam().name);
        const SceneDifference found = CompareSceneFrames(frame, expected);
        EXPECT_TRUE(found.IsWithin())
            << what << ": " << found.rounding.displaced + found.rounding.wrong
            << " pixels off by more than 2, " << found.large.wrong
            << " by more than 16 away from edges; largest step " << found.large.largestStep;
    }

private:
    const WindowFlags flags;
    const ScratchDirectory scratch;
};

} // namespace

TEST_P(ExampleFrames, LookAsAcceptedFromTextAndBinary)
{
    const Frame text = DrawText();
    ASSERT_EQ(text.pixels.size(), kPixels);
    if (std::getenv("QSA_ACCEPT_PICTURES")) {
        ASSERT_FALSE(IsHeadlessHost()) << "accepted frames come from the system's Direct3D";
        const FrameStage stage(640, 480);
        EXPECT_TRUE(WriteFramePng(text, (kAccepted / Name(".png")).string()));
        return;
    }
    const Frame binary = DrawBinary();
    ASSERT_EQ(binary.pixels.size(), kPixels);
    ExpectAccepted(text, "text");
    ExpectAccepted(binary, "binary");
    const FrameDifference found = CompareFrames(text, binary, kRounding);
    EXPECT_LE(found.displaced + found.wrong, kPixels / 1000)
        << "largest step " << found.largestStep;
}

INSTANTIATE_TEST_SUITE_P(
    All, ExampleFrames,
    testing::Values(ExampleFrame{"animation", ""}, ExampleFrame{"effect", "effect"},
                    ExampleFrame{"empty", ""}, ExampleFrame{"gloss", "effects"},
                    ExampleFrame{"glow", "effects"}, ExampleFrame{"groups", ""},
                    ExampleFrame{"harbour", ""}, ExampleFrame{"keywords", ""},
                    ExampleFrame{"lava", "effects"}, ExampleFrame{"lights", ""},
                    ExampleFrame{"materials", ""}, ExampleFrame{"oddities", ""},
                    ExampleFrame{"outline", "effects"}, ExampleFrame{"pond", "effects"},
                    ExampleFrame{"relief", "effects"}, ExampleFrame{"ripple", "effects"},
                    ExampleFrame{"skin", "effects"}, ExampleFrame{"skinned", ""},
                    ExampleFrame{"toon", "effects"}),
    [](const testing::TestParamInfo<ExampleFrame>& row) { return std::string(row.param.name); });

// ---- Effects that move

namespace {

float gSecondsOfEffects = 0.0f;

/// The frame of an example with an effect, at a time of the effect's own.
Frame DrawEffectAt(FrameStage& stage, const char* scene, float seconds)
{
    gSecondsOfEffects = seconds;
    gGfx->getGameTime = [] { return gSecondsOfEffects; };
    return stage.Draw(scene);
}

/// Number of pixels that differ by more than 16 in a channel.
size_t Differing(const Frame& a, const Frame& b)
{
    const FrameDifference found = CompareFrames(a, b, 16);
    return found.displaced + found.wrong;
}

} // namespace

// Both forms of each effect lie beside the scenes, which name no extension: the compiled one is taken first.
// Computations of the two round differently, by the last bits of a float, so some pixels of smooth pictures
// are a level apart. Edges do not move.
TEST(EffectExamples, TextsDrawWhatTheCompiledEffectsDraw)
{
    const WindowFlags flags;
    const ScratchDirectory scratch;
    fs::copy(kExamples, scratch.Path() / "examples", fs::copy_options::recursive);
    FrameStage stage(640, 480);
    if (!FrameStage::ReadsEffectTexts())
        GTEST_SKIP() << "this host reads no effect texts";
    fs::current_path(scratch.Path() / "examples" / "effects");
    size_t scenes = 0;
    for (const auto& entry : fs::directory_iterator(kExamples / "effects")) {
        if (entry.path().extension() != ".qsa")
            continue;
        ++scenes;
        const std::string scene = entry.path().filename().string();
        const fs::path compiled = fs::path(scene).replace_extension(".fxo");
        const Frame first = DrawEffectAt(stage, scene.c_str(), 1.7f);
        ASSERT_EQ(first.pixels.size(), kPixels) << scene;
        EXPECT_EQ(gGfx->effectManager.GetCount(), 0) << "the next load reads the file again";
        fs::rename(compiled, "moved.fxo");
        const Frame second = DrawEffectAt(stage, scene.c_str(), 1.7f);
        fs::rename("moved.fxo", compiled);
        const FrameDifference found = CompareFrames(first, second, 1);
        EXPECT_EQ(found.displaced + found.wrong, 0u) << scene;
    }
    EXPECT_GE(scenes, 9u);
    fs::current_path(scratch.Path());
}

// lava.qsa moves the texture by 0.12 of the picture's height per second, the second layer 1.5 times
// as fast. After 2 / 0.12 seconds the layers have moved by two and three heights and are back where
// they were; after half a height the stream, which covers at least a tenth of the frame, looks
// different. ripple.fx oscillates with cos(3 * time): a period is 2 * pi / 3 seconds, and after
// half of it the waves are inverted. In pond.qsa all that moves has gone a whole number of times after 100
// seconds; after 2 seconds the first wave is inverted.
TEST(EffectExamples, MoveAndComeBackAfterTheirPeriod)
{
    static constexpr struct {
        const char* scene;
        float between, period;
        size_t leastDifferent;
    } kRows[] = {
        {"lava.qsa", 0.5f / 0.12f, 2.0f / 0.12f, 15000},
        {"ripple.qsa", std::numbers::pi_v<float> / 3, 2 * std::numbers::pi_v<float> / 3, 5000},
        {"pond.qsa", 2.0f, 100.0f, 15000},
    };
    const WindowFlags flags;
    const ScratchDirectory scratch;
    fs::copy(kExamples, scratch.Path() / "examples", fs::copy_options::recursive);
    FrameStage stage(640, 480);
    fs::current_path(scratch.Path() / "examples" / "effects");
    for (const auto& row : kRows) {
        const Frame first = DrawEffectAt(stage, row.scene, 0.0f);
        ASSERT_EQ(first.pixels.size(), 307200u) << row.scene;
        EXPECT_GT(Differing(first, DrawEffectAt(stage, row.scene, row.between)), row.leastDifferent)
            << row.scene;
        EXPECT_LT(Differing(first, DrawEffectAt(stage, row.scene, row.period)), 50u) << row.scene;
    }
    fs::current_path(scratch.Path());
}
