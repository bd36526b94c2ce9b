// Draws every picture program and compares the result with the stored picture, which the system's
// Direct3D drew. If the environment variable PICTURES names a directory, all pictures are also
// written there, as NAME.argb without a header. QSA_ACCEPT_PICTURES=1 stores the drawn pictures, on
// the Windows host only: pictures of this project's own rasterizer could not verify it.

#include "tests/platform/pictures/PictureProgram.h"
#include "tests/support/HostKind.h"
#include "tests/support/TreePaths.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

namespace {

std::string GoldenPath(const PictureProgram& program)
{
    return SourcePath("tests/platform/pictures/golden/") + program.name + ".png";
}

/// Saves the actual picture and its difference for inspection.
void KeepPictures(PictureStage& stage, const PictureProgram& program, const Picture& actual,
                  const Picture& expected)
{
    const std::filesystem::path directory = BuildPath("picture-differences");
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    const std::string start = (directory / program.name).string();
    WritePngPicture(stage.Device(), start + ".actual.png", actual);
    if (expected.pixels.size() != actual.pixels.size())
        return;
    WritePngPicture(stage.Device(), start + ".expected.png", expected);
    WritePngPicture(stage.Device(), start + ".difference.png", DifferencePicture(actual, expected));
}

class PictureTest : public testing::TestWithParam<PictureProgram> {
protected:
    static void TearDownTestSuite() { shared.reset(); }

    /// The common stage, or one for this picture alone.
    PictureStage& Stage()
    {
        auto& stage = GetParam().sharesStage ? shared : own;
        if (!stage)
            stage = std::make_unique<PictureStage>();
        return *stage;
    }

private:
    static std::unique_ptr<PictureStage> shared;
    std::unique_ptr<PictureStage> own;
};

std::unique_ptr<PictureStage> PictureTest::shared;

} // namespace

TEST_P(PictureTest, LooksAsStored)
{
    const PictureProgram& program = GetParam();
    PictureStage& stage = Stage();
    ASSERT_TRUE(stage.IsUsable());
    const Picture actual = stage.Draw(program.draw);
    if (const char* directory = std::getenv("PICTURES")) {
        EXPECT_TRUE(WriteRawPicture(std::string(directory) + "/" + program.name + ".argb", actual));
    }
    if (std::getenv("QSA_ACCEPT_PICTURES")) {
        ASSERT_FALSE(IsHeadlessHost()) << "stored pictures come from the system's Direct3D";
        EXPECT_TRUE(WritePngPicture(stage.Device(), GoldenPath(program), actual));
        return;
    }
    const Picture expected = ReadPngPicture(stage.Device(), GoldenPath(program));
    const PictureDifference difference = ComparePictures(actual, expected, program.allowedStep);
    EXPECT_LE(difference.pixels, program.allowedPixels)
        << "largest step " << difference.largestStep;
    if (difference.pixels > program.allowedPixels)
        KeepPictures(stage, program, actual, expected);
}

INSTANTIATE_TEST_SUITE_P(All, PictureTest, testing::ValuesIn(AllPicturePrograms()),
                         [](const testing::TestParamInfo<PictureProgram>& row) {
                             return row.param.name;
                         });

std::vector<PictureProgram> AllPicturePrograms()
{
    std::vector<PictureProgram> all;
    for (const auto* topic :
         {&kPrimitivePictures, &kTexturePictures, &kStagePictures, &kVertexPictures,
          &kOutputPictures, &kArithmeticPictures, &kOldPixelPictures, &kFlowPictures,
          &kShaderRulePictures, &kSolidPictures, &kStudioPictures})
        all.insert(all.end(), topic->begin(), topic->end());
    return all;
}
