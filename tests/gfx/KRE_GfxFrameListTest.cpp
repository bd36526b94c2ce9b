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

TEST(SplitFrameList, TakesTheLinesWithoutTheirLeadingBlanks)
{
    static const struct {
        const char* what;
        std::string text;
        std::vector<std::string> expected;
    } cases[] = {
        {"nothing", "", {}},
        {"one line", "a.bmp", {"a.bmp"}},
        {"line ends of all kinds", "a\nb\rc\r\nd\r\n", {"a", "b", "c", "d"}},
        {"blank lines", "\n\n  \n\t\r\n \n", {}},
        {"leading blanks and control bytes", " \t\x01 a.bmp\n\x1F z.bmp", {"a.bmp", "z.bmp"}},
        {"blanks inside and behind stay", "  two words  \n", {"two words  "}},
        {"bytes from 128 on are letters", "\xE4.bmp\n", {"\xE4.bmp"}},
        {"NUL is a control byte", std::string("\0a\n", 3), {"a"}},
    };
    for (const auto& c : cases) {
        const auto names = SplitFrameList(c.text);
        ASSERT_EQ(names.size(), c.expected.size()) << c.what;
        for (size_t i = 0; i < names.size(); ++i)
            EXPECT_EQ(names[i], c.expected[i]) << c.what;
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

TEST_F(LoadFrameList, FramesLieBesideTheList)
{
    directory.Write("maps/red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("maps/flash.ifl", "red.bmp\n");
    KRE_Texture texture;
    Load(texture, "maps/flash.ifl");
    EXPECT_TRUE(texture.IsValid());
}

TEST_F(LoadFrameList, AFrameThatExistsAsItIsNamedWins)
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

TEST_F(LoadFrameList, QuirkFramesDoNotShareThePicturesOfEachOther)
{
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("flash.ifl", "red.bmp\nred.bmp\n");
    KRE_Texture texture;
    Load(texture, "flash.ifl");
    EXPECT_NE(texture.frames[0], texture.frames[1]);
    EXPECT_STREQ(gfx->textureManager.GetEntry(0)->name, "red.bmp");
}

TEST_F(LoadFrameList, AllFramesAreGivenBack)
{
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("flash.ifl", "red.bmp\nred.bmp\nred.bmp\n");
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
    directory.Write("maps/flash.ifl", "gone.bmp\n");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "maps/flash.ifl"), "Can not open file maps\\gone.bmp");
}

TEST_F(LoadFrameList, AListInItselfIsAnErrorThatNamesIt)
{
    directory.Write("snake.ifl", "snake.ifl\n");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "snake.ifl"),
              "Texture file list snake.ifl names another list: snake.ifl");
}

TEST_F(LoadFrameList, TwoListsInEachOtherAreAnError)
{
    directory.Write("a.ifl", "b.IFL\n");
    directory.Write("b.IFL", "a.ifl\n");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "a.ifl"), "Texture file list a.ifl names another list: b.IFL");
}

TEST_F(LoadFrameList, AListOf10000FramesIsMoreThanTheEngineHolds)
{
    directory.Write("dot.bmp", PlainBmp(1, 1, 0));
    directory.Write("long.ifl", Repeat("dot.bmp\n", 10000));
    // Most of the table is taken, so that the picture need not be read 4096 times.
    constexpr int32_t kTaken = KRE_ResourceManager::kCapacity - 3;
    for (int32_t i = 0; i < kTaken; ++i)
        gfx->textureManager.Add(nullptr, "taken");
    {
        KRE_Texture texture;
        EXPECT_EQ(LoadError(texture, "long.ifl"), "Can not expand fixed list");
    }
    EXPECT_EQ(gfx->textureManager.GetCount(), kTaken);
}

TEST_F(LoadFrameList, AListOf10000SharedFramesLoads)
{
    gfx->videoSources[5].width = gfx->videoSources[5].height = 1;
    directory.Write("long.ifl", Repeat(">>Video5\n", 10000));
    KRE_Texture texture;
    Load(texture, "long.ifl");
    ASSERT_EQ(texture.sequenceCount, 10000);
    EXPECT_EQ(texture.frames[0], texture.frames[9999]);
    EXPECT_EQ(gfx->textureManager.GetEntry(0)->useCount, 10000);
}

TEST_F(LoadFrameList, ADirectoryIsNoList)
{
    directory.Write("folder.ifl/inside.txt", "x");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "folder.ifl"), "Can not open file folder.ifl");
}

TEST_F(LoadFrameList, ALineThatIsNoNameIsAnErrorOnly)
{
    for (const std::string& line : {std::string(300000, 'x'), std::string("a\0b.bmp", 7),
                                    std::string("\xFF\xFE\x80"), std::string("..\\..\\..")}) {
        directory.Write("odd.ifl", line + "\n");
        KRE_Texture texture;
        EXPECT_EQ(LoadError(texture, "odd.ifl").rfind("Can not open file ", 0), 0u);
    }
}
