// The texts of tests/studio beside their compiled files.

#include "platform/EffectCompiler.h"
#include "tests/platform/pictures/StudioStage.h"
#include "tests/support/FileContent.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>

class StudioText : public testing::TestWithParam<std::string> {};

TEST_P(StudioText, DrawsWhatItsCompiledFileDraws)
{
    const auto drawn = [](const char* extension) {
        PictureStage stage;
        return stage.Draw([&](PictureStage& there) {
            DrawStudioEffect(there, GetParam(), StudioFile(GetParam()) + extension);
        });
    };
    const Picture fromText = drawn(".fx");
    EXPECT_TRUE(fromText.pixels == drawn(".fxo").pixels);
    // Something is drawn over the background, and it is not all of one colour.
    const std::set<DWORD> colours(fromText.pixels.begin(), fromText.pixels.end());
    EXPECT_GT(colours.size(), 2u);
}

TEST_P(StudioText, HasItsCompiledFile)
{
    std::string compiled;
    ASSERT_EQ(CompileEffect(StudioFile(GetParam()) + ".fx", compiled), "");
    EXPECT_TRUE(FileContent(StudioFile(GetParam()) + ".fxo") == compiled)
        << "made anew by tools/make-examples";
}

INSTANTIATE_TEST_SUITE_P(All, StudioText, testing::ValuesIn(StudioEffects()),
                         [](const auto& row) { return row.param; });

TEST(StudioTexts, AreAllDrawn)
{
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(StudioFile("")))
        if (entry.path().extension() == ".fx")
            files.insert(entry.path().stem().string());
    EXPECT_EQ(files, std::set<std::string>(StudioEffects().begin(), StudioEffects().end()));
}
