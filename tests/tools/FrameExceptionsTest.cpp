#include "tools/frames/FrameExceptions.h"
#include "tests/support/ScratchDirectory.h"

#include <gmock/gmock.h>

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

TEST(FrameExceptions, LinesAreReadAndCommentsAndOthersIgnored)
{
    const ScratchDirectory scratch;
    scratch.Write("list.txt", "# a note\nlava 0 0 0 0 no frame of it\nhalf a line 1 2\n"
                              "flag 1 0 -2 0 one column\n");
    const auto exceptions = ReadFrameExceptions("list.txt");
    ASSERT_THAT(exceptions, SizeIs(2));
    EXPECT_EQ(exceptions[0].scene, "lava");
    EXPECT_EQ(exceptions[0].reason, "no frame of it");
    EXPECT_TRUE(exceptions[0].IsWholeFrame());
    EXPECT_EQ(exceptions[1].right, -2);
    EXPECT_FALSE(exceptions[1].IsWholeFrame());
    EXPECT_THAT(ReadFrameExceptions("no such.txt"), SizeIs(0));
}

// A frame of 4 x 1: from column 1 to the second from the right is only column 1.
TEST(FrameExceptions, PartsOfTheSceneAreBlackened)
{
    constexpr uint32_t kWhite = 0xFFFFFFFF;
    const std::vector<FrameException> exceptions = {{"flag", 1, 0, -2, 0, ""},
                                                    {"lava", 0, 0, 0, 0, ""}};
    Frame frame = {4, 1, std::vector<uint32_t>(4, kWhite)};
    BlankExceptions(frame, exceptions, "harbour");
    EXPECT_THAT(frame.pixels, Each(kWhite));
    BlankExceptions(frame, exceptions, "flag");
    EXPECT_THAT(frame.pixels, ElementsAre(kWhite, testing::Ne(kWhite), kWhite, kWhite));
    BlankExceptions(frame, exceptions, "lava");
    EXPECT_THAT(frame.pixels, Each(testing::Ne(kWhite)));
}
