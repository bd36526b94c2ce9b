// Draws the frame of each example and holds it against the accepted one, which is what the system's
// Direct3D drew and somebody has looked at. QSA_ACCEPT_PICTURES=1 makes what is drawn the accepted
// frames, on the Windows host only: a frame of this project's own rasterizer would prove nothing about
// it. What Wine does not draw as documented, skinned meshes above all, is left out.

#include "gfx/KRE_Gfx.h"
#include "tests/app/WindowFlags.h"
#include "tests/support/HostKind.h"
#include "tests/support/Picture.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"
#include "tools/frames/FrameExceptions.h"
#include "tools/frames/FrameStage.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

struct ExampleFrame {
    const char* name;
    const char* folder; ///< below examples
};

namespace {

namespace fs = std::filesystem;

const fs::path kExamples = SourcePath("examples");
const fs::path kAccepted = SourcePath("tests/app/example_frames");

class ExampleFrames : public testing::TestWithParam<ExampleFrame> {};

Frame ReadAccepted(const fs::path& path)
{
    const Picture picture = ReadPngPicture(gGfx->device.Get(), path.string());
    Frame frame = {picture.width, picture.height, {}};
    for (const DWORD pixel : picture.pixels)
        frame.pixels.push_back(static_cast<std::uint32_t>(pixel));
    return frame;
}

} // namespace

TEST_P(ExampleFrames, LooksAsAccepted)
{
    const ExampleFrame& example = GetParam();
    const WindowFlags flags;
    const ScratchDirectory scratch;
    fs::copy(kExamples, scratch.Path() / "examples", fs::copy_options::recursive);
    FrameStage stage(640, 480);
    fs::current_path(scratch.Path() / "examples" / example.folder); // the log is written there
    Frame frame = stage.Draw((std::string(example.name) + ".qsa").c_str());
    fs::current_path(scratch.Path());
    ASSERT_EQ(frame.pixels.size(), 307200u);
    const fs::path accepted = kAccepted / (std::string(example.name) + ".png");
    if (std::getenv("QSA_ACCEPT_PICTURES")) {
        ASSERT_FALSE(IsHeadlessHost()) << "accepted frames come from the system's Direct3D";
        EXPECT_TRUE(WriteFramePng(frame, accepted.string()));
        return;
    }
    Frame expected = ReadAccepted(accepted);
    const auto exceptions = ReadFrameExceptions(SourcePath("tools/frames/exceptions.txt"));
    ASSERT_FALSE(exceptions.empty());
    BlankExceptions(frame, exceptions, example.name);
    BlankExceptions(expected, exceptions, example.name);
    const SceneDifference found = CompareSceneFrames(frame, expected);
    EXPECT_TRUE(found.IsWithin()) << found.rounding.displaced + found.rounding.wrong
                                  << " pixels off by more than 2, " << found.large.wrong
                                  << " by more than 16 away from edges; largest step "
                                  << found.large.largestStep;
}

INSTANTIATE_TEST_SUITE_P(All, ExampleFrames,
                         testing::Values(ExampleFrame{"animation", ""},
                                         ExampleFrame{"effect", "effect"},
                                         ExampleFrame{"empty", ""}, ExampleFrame{"groups", ""},
                                         ExampleFrame{"harbour", ""}, ExampleFrame{"keywords", ""},
                                         ExampleFrame{"lights", ""}, ExampleFrame{"materials", ""},
                                         ExampleFrame{"oddities", ""}, ExampleFrame{"skinned", ""}),
                         [](const testing::TestParamInfo<ExampleFrame>& row) {
                             return std::string(row.param.name);
                         });
