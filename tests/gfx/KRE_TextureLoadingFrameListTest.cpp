#include "gfx/KRE_FrameList.h"
#include "tests/gfx/TextureEngine.h"

using LoadFrameList = TextureEngine;

static std::string Repeat(const std::string& line, int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += line;
    return text;
}

TEST(SplitFrameList, TrimsTheLines)
{
    static const struct {
        const char* what;
        std::string text;
        std::vector<std::string> expected; // each after its line number
    } cases[] = {
        {"nothing", "", {}},
        {"one line", "a.bmp", {"1:a.bmp"}},
        {"line ends of all kinds", "a\nb\rc\r\nd\r\n", {"1:a", "2:b", "3:c", "4:d"}},
        {"LF and CR are two ends", "a\n\rb", {"1:a", "3:b"}},
        {"blank lines", "\n\n  \n\t\r\n \n", {}},
        {"blank lines are counted", "\r\n \n\na\r\n\r\nb", {"4:a", "6:b"}},
        {"blanks and control bytes", " \t\x01 a.bmp \t\n\x1F z.bmp\x1F", {"1:a.bmp", "2:z.bmp"}},
        {"blanks inside stay", "  two  words 3  \n", {"1:two  words 3"}},
        {"bytes from 128 on are letters", "\xE4.bm\xE4\n", {"1:\xE4.bm\xE4"}},
        {"NUL is a control byte", std::string("\0a\0\n", 4), {"1:a"}},
    };
    for (const auto& c : cases) {
        std::vector<std::string> lines;
        for (const KRE_FrameLine& line : SplitFrameList(c.text))
            lines.push_back(std::to_string(line.number) + ":" + std::string(line.text));
        EXPECT_EQ(lines, c.expected) << c.what;
    }
}

TEST(SplitFrameCount, ReadsALastWordOfDigits)
{
    static const struct {
        const char* what;
        const char* line;
        const char* name;
        int32_t count;
    } cases[] = {
        {"no count", "a.bmp", "a.bmp", 1},
        {"a count", "a.bmp 12", "a.bmp", 12},
        {"blanks between", "a.bmp \t  7", "a.bmp", 7},
        {"blanks in the name", "two words 2", "two words", 2},
        {"the last word only", "a.bmp 3 4", "a.bmp 3", 4},
        {"leading zeros", "a.bmp 010", "a.bmp", 10},
        {"counts begin at 1", "a.bmp 0", "a.bmp 0", 1},
        {"no number", "a.bmp 2x", "a.bmp 2x", 1},
        {"no sign", "a.bmp -2", "a.bmp -2", 1},
        {"no name", "12", "12", 1},
        {"digits of the name", "a12", "a12", 1},
        {"as many as there may be", "a.bmp 4096", "a.bmp", 4096},
        {"one too many", "a.bmp 4097", "a.bmp", 4097},
        {"far too many", "a.bmp 99999999999999999999", "a.bmp", 4097},
        {"nothing", "", "", 1},
    };
    for (const auto& c : cases) {
        const KRE_FrameRun run = SplitFrameCount(c.line);
        EXPECT_EQ(run.name, c.name) << c.what;
        EXPECT_EQ(run.count, c.count) << c.what;
    }
}

TEST_F(LoadFrameList, MakesASequenceOfTheLines)
{
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("blue.bmp", PlainBmp(2, 2, 0x0000FF));
    directory.Write("flash.IFL", "red.bmp\r\n\r\n  blue.bmp\r\n");
    KRE_Texture texture;
    texture.slotNames[0].Assign("flash.IFL");
    texture.SetSequenceTiming(0.5f, 1.0f, kSequenceOnce);
    Load(texture, "flash.IFL");
    ASSERT_EQ(texture.sequenceCount, 2);
    EXPECT_EQ(texture.frameIndex, 1);
    EXPECT_EQ(texture.current, texture.frames[1]);
    EXPECT_EQ(texture.width, 2);
    EXPECT_EQ(PixelOf(texture, 0, 0) & 0xFFFFFF, 0x0000FFu);
    texture.SelectFrame(0);
    texture.Refresh();
    EXPECT_EQ(PixelOf(texture, 0, 0) & 0xFFFFFF, 0xFF0000u);
    EXPECT_STREQ(texture.slotNames[0].c_str(), "flash.IFL") << "names stay";
    EXPECT_EQ(texture.framePeriod, 0.5f) << "timing stays";
    EXPECT_EQ(texture.slotFileInfo[0].sizeBytes, 0);
}

TEST_F(LoadFrameList, FramesAreBesideTheList)
{
    directory.Write("maps/red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("maps/flash.ifl", "red.bmp\n");
    KRE_Texture texture;
    Load(texture, "maps/flash.ifl");
    EXPECT_TRUE(texture.IsValid());
}

TEST_F(LoadFrameList, AFrameAtItsNamedPathWins)
{
    directory.Write("red.bmp", PlainBmp(8, 8, 0xFF0000));
    directory.Write("maps/red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("maps/flash.ifl", "red.bmp\n");
    KRE_Texture texture;
    Load(texture, "maps/flash.ifl");
    EXPECT_EQ(texture.width, 8);
}

TEST_F(LoadFrameList, FramesShareThePicturesOfPlainTextures)
{
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("flash.ifl", "red.bmp\n");
    KRE_Texture plain;
    KRE_Texture sequence;
    Load(plain, "red.bmp");
    Load(sequence, "flash.ifl");
    EXPECT_EQ(sequence.current, plain.current);
}

TEST_F(LoadFrameList, QuirkFramesDoNotShareEachOthersPictures)
{
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("flash.ifl", "red.bmp\nred.bmp\n");
    KRE_Texture texture;
    Load(texture, "flash.ifl");
    EXPECT_NE(texture.frames[0], texture.frames[1]);
    EXPECT_STREQ(gfx->textureManager.GetEntry(0)->name, "red.bmp");
}

TEST_F(LoadFrameList, ANumberAfterTheNameRepeatsItsPicture)
{
    directory.Write("maps/red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("blue sky.bmp", PlainBmp(2, 2, 0x0000FF));
    directory.Write("maps/flash.ifl", "red.bmp 3\r\nblue sky.bmp\t2 \r\n");
    KRE_Texture texture;
    Load(texture, "maps/flash.ifl");
    ASSERT_EQ(texture.sequenceCount, 5);
    EXPECT_EQ(texture.frames[1], texture.frames[0]);
    EXPECT_EQ(texture.frames[2], texture.frames[0]);
    EXPECT_NE(texture.frames[3], texture.frames[0]);
    EXPECT_EQ(texture.frames[4], texture.frames[3]);
    EXPECT_EQ(texture.current, texture.frames[4]);
    ASSERT_EQ(gfx->textureManager.GetCount(), 2) << "repeats share one picture";
    EXPECT_EQ(gfx->textureManager.GetEntry(0)->useCount, 3);
    EXPECT_EQ(gfx->textureManager.GetEntry(1)->useCount, 2);
    for (int32_t frame = 0; frame < 5; ++frame) {
        texture.SelectFrame(frame);
        texture.Refresh();
        EXPECT_EQ(PixelOf(texture, 0, 0) & 0xFFFFFF, frame < 3 ? 0xFF0000u : 0x0000FFu) << frame;
    }
}

TEST_F(LoadFrameList, AWholeLineThatNamesAFileHasNoCount)
{
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("red.bmp 3", PlainBmp(8, 8, 0xFF0000));
    directory.Write("maps/red.bmp 2", PlainBmp(2, 2, 0xFF0000));
    directory.Write("maps/flash.ifl", " red.bmp 3 \nred.bmp 2\n");
    KRE_Texture texture;
    Load(texture, "maps/flash.ifl");
    ASSERT_EQ(texture.sequenceCount, 2);
    EXPECT_EQ(texture.width, 2) << "beside the list, though red.bmp itself is found as it is named";
    texture.SelectFrame(0);
    texture.Refresh();
    EXPECT_EQ(texture.width, 8);
}

TEST_F(LoadFrameList, AVideoSourceIsAWholeLine)
{
    gfx->videoSources[5].width = gfx->videoSources[5].height = 1;
    directory.Write("film.ifl", ">>Video 5\n");
    KRE_Texture texture;
    Load(texture, "film.ifl");
    EXPECT_EQ(texture.sequenceCount, 1);
    EXPECT_EQ(texture.videoSource, 5);
}

TEST_F(LoadFrameList, AllFramesAreReleased)
{
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("flash.ifl", "red.bmp\nred.bmp 20\nred.bmp\n");
    {
        KRE_Texture texture;
        Load(texture, "flash.ifl");
        EXPECT_EQ(gfx->textureManager.GetCount(), 3);
        Load(texture, "flash.ifl");
        EXPECT_EQ(gfx->textureManager.GetCount(), 3);
    }
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
}

TEST_F(LoadFrameList, AListWithOnlyBlankLinesIsAnError)
{
    directory.Write("blank.ifl", "\r\n   \n\t\n");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "blank.ifl"), "Empty texture file list");
    directory.Write("empty.ifl", "");
    EXPECT_EQ(LoadError(texture, "empty.ifl"), "Empty texture file list");
}

TEST_F(LoadFrameList, AMissingFrameIsAnErrorThatNamesIt)
{
    KRE_Texture texture;
    directory.Write("maps/flash.ifl", "gone.bmp\n");
    EXPECT_EQ(LoadError(texture, "maps/flash.ifl"), "Can not open file maps\\gone.bmp");
    directory.Write("maps/flash.ifl", "gone.bmp 12\n");
    EXPECT_EQ(LoadError(texture, "maps/flash.ifl"), "Can not open file maps\\gone.bmp");
    directory.Write("maps/flash.ifl", "gone.bmp 1.5\n");
    EXPECT_EQ(LoadError(texture, "maps/flash.ifl"), "Can not open file maps\\gone.bmp 1.5");
}

TEST_F(LoadFrameList, AWarningBeforeTheErrorNamesListAndLine)
{
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("maps/flash.ifl", "red.bmp\r\n\r\n gone.bmp 12 \r\nlost.bmp\r\n");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "maps/flash.ifl"), "Can not open file maps\\gone.bmp");
    const std::string log = directory.Read("logfile.txt");
    const size_t warningAt = log.find(
        "Warning:KRE_Gfx: Texture file list maps/flash.ifl, line 3: no picture 'gone.bmp 12'");
    ASSERT_NE(warningAt, std::string::npos) << log;
    EXPECT_LT(warningAt, log.find("Error:KRE_Gfx: Can not open file maps\\gone.bmp"));
    EXPECT_EQ(log.find("lost"), std::string::npos) << "the first one ends the load";
}

TEST_F(LoadFrameList, ListsThatLoadCauseNoWarnings)
{
    gfx->videoSources[5].width = gfx->videoSources[5].height = 1;
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("flash.ifl", "red.bmp\n>>Video5\nred.bmp 3\n");
    KRE_Texture texture;
    Load(texture, "flash.ifl");
    EXPECT_FALSE(directory.Has("logfile.txt"));
}

TEST_F(LoadFrameList, AListThatNamesItselfIsAnErrorThatNamesIt)
{
    directory.Write("snake.ifl", "snake.ifl\n");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "snake.ifl"),
              "Texture file list snake.ifl names another list: snake.ifl");
}

TEST_F(LoadFrameList, TwoListsThatNameEachOtherAreAnError)
{
    directory.Write("a.ifl", "b.IFL\n");
    directory.Write("b.IFL", "a.ifl\n");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "a.ifl"), "Texture file list a.ifl names another list: b.IFL");
}

TEST_F(LoadFrameList, ANestedListWithACountIsAnErrorToo)
{
    directory.Write("a.ifl", "b.ifl 2\n");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "a.ifl"), "Texture file list a.ifl names another list: b.ifl");
}

TEST_F(LoadFrameList, MoreThan4096FramesInTotalAreAnError)
{
    static const struct {
        const char* what;
        std::string text;
        bool isTooLong;
    } cases[] = {
        {"lines", Repeat(">>Video5\n", 4096), false},
        {"a line more", Repeat(">>Video5\n", 4097), true},
        {"a count", "dot.bmp 4096", false},
        {"a higher count", "dot.bmp 4097", true},
        {"a count and lines", "dot.bmp 4094\n>>Video5\n>>Video5\n", false},
        {"a count and a line more", "dot.bmp 4094\n>>Video5\n>>Video5\n>>Video5\n", true},
        {"a count that no number holds", "dot.bmp 4294967297", true},
        {"many high counts", Repeat("dot.bmp 999999999\n", 3000), true},
        {"of a picture that is not there", "gone.bmp 5000", true},
    };
    gfx->videoSources[5].width = gfx->videoSources[5].height = 1;
    directory.Write("dot.bmp", PlainBmp(1, 1, 0));
    for (const auto& c : cases) {
        directory.Write("long.ifl", c.text);
        KRE_Texture texture;
        EXPECT_EQ(LoadError(texture, "long.ifl"),
                  c.isTooLong ? "Texture file list long.ifl has more than 4096 frames" : "")
            << c.what;
        EXPECT_EQ(texture.sequenceCount, c.isTooLong ? 0 : 4096) << c.what;
    }
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
}

TEST_F(LoadFrameList, AListOfMorePicturesThanTheEngineHasRoomForIsAnError)
{
    directory.Write("dot.bmp", PlainBmp(1, 1, 0));
    directory.Write("long.ifl", Repeat("dot.bmp\n", 10));
    // Most of the table is filled, so that the picture need not be read 4096 times.
    constexpr int32_t kTaken = KRE_ResourceManager::kCapacity - 3;
    for (int32_t i = 0; i < kTaken; ++i)
        gfx->textureManager.Add(nullptr, "taken");
    {
        KRE_Texture texture;
        EXPECT_EQ(LoadError(texture, "long.ifl"), "Can not expand fixed list");
    }
    EXPECT_EQ(gfx->textureManager.GetCount(), kTaken);
}

TEST_F(LoadFrameList, ADirectoryIsNotAList)
{
    directory.Write("folder.ifl/inside.txt", "x");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "folder.ifl"), "Can not open file folder.ifl");
}

TEST_F(LoadFrameList, ALineThatCannotBeANameIsJustAnError)
{
    for (const std::string& line : {std::string(300000, 'x'), std::string("a\0b.bmp", 7),
                                    std::string("\xFF\xFE\x80"), std::string("..\\..\\..")}) {
        directory.Write("odd.ifl", line + "\n");
        KRE_Texture texture;
        EXPECT_EQ(LoadError(texture, "odd.ifl").rfind("Can not open file ", 0), 0u);
    }
}
