#include "tests/gfx/TextureEngine.h"

using testing::Test;
using KRE_TextureLoadingTest = TextureEngine;

namespace {

/// The message of `LoadTexture` for a picture that the picture library refuses, up to the result's
/// name.
constexpr const char* kNoImage = " D3DXGetImageInfoFromFile failed: ";

bool StartsWith(const std::string& text, const std::string& start)
{
    return text.compare(0, start.size(), start) == 0;
}

bool EndsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

} // namespace

TEST_F(KRE_TextureLoadingTest, PixelsOfABitmapArrive)
{
    // 2 by 2: red, green, blue and grey, rows from the top.
    directory.Write("four.bmp", Bmp24(2, 2, {0xFF0000, 0x00FF00, 0x0000FF, 0x404142}));
    KRE_Texture texture;
    Load(texture, "four.bmp");
    EXPECT_EQ(texture.width, 2);
    EXPECT_EQ(texture.height, 2);
    EXPECT_EQ(texture.format, D3DFMT_X8R8G8B8);
    EXPECT_EQ(texture.levelCount, 1);
    EXPECT_EQ(PixelOf(texture, 0, 0) & 0xFFFFFF, 0xFF0000u);
    EXPECT_EQ(PixelOf(texture, 1, 0) & 0xFFFFFF, 0x00FF00u);
    EXPECT_EQ(PixelOf(texture, 0, 1) & 0xFFFFFF, 0x0000FFu);
    EXPECT_EQ(PixelOf(texture, 1, 1) & 0xFFFFFF, 0x404142u);
    EXPECT_EQ(texture.hasAlpha, 0);
    EXPECT_FALSE(texture.HasAlpha());
}

TEST_F(KRE_TextureLoadingTest, AlphaOfATargaArrives)
{
    directory.Write("glass.tga", Tga32(2, 1, {0x80112233, 0x7F445566}));
    KRE_Texture texture;
    Load(texture, "glass.tga");
    EXPECT_EQ(texture.format, D3DFMT_A8R8G8B8);
    EXPECT_EQ(PixelOf(texture, 0, 0), 0x80112233u);
    EXPECT_EQ(PixelOf(texture, 1, 0), 0x7F445566u);
    EXPECT_EQ(texture.hasAlpha, 1);
    EXPECT_TRUE(texture.HasAlpha());
}

TEST_F(KRE_TextureLoadingTest, FillsInSlotSizeAndRectangle)
{
    const std::string file = PlainBmp(8, 4, 0x123456);
    directory.Write("a.bmp", file);
    KRE_Texture texture;
    texture.SelectStage(2);
    Load(texture, "a.bmp");
    EXPECT_NE(texture.slotTextures[2], nullptr);
    EXPECT_EQ(texture.current, texture.slotTextures[2]);
    EXPECT_NE(texture.slotIds[2], -1);
    EXPECT_EQ(texture.manager, &gfx->textureManager);
    EXPECT_EQ(texture.slotFileInfo[2].sizeBytes, static_cast<int32_t>(file.size()));
    EXPECT_EQ(texture.sourceWidth, 8.0f);
    EXPECT_EQ(texture.sourceHeight, 4.0f);
    EXPECT_EQ(texture.originU, 0.25f / 8.0f);
    EXPECT_EQ(texture.axisAU, (8.0f - 0.02f) / 8.0f);
    EXPECT_EQ(texture.axisBV, (4.0f - 0.02f) / 4.0f);
    EXPECT_TRUE(texture.quad);
}

TEST_F(KRE_TextureLoadingTest, ColorKeyBecomesTransparent)
{
    directory.Write("key.bmp", Bmp24(2, 1, {0xFF00FF, 0x102030}));
    KRE_Texture texture;
    gfx->LoadTexture(&texture, "key.bmp", 0xFFFF00FF, -1, -1, 1);
    EXPECT_EQ(PixelOf(texture, 0, 0) >> 24, 0u);
    EXPECT_EQ(PixelOf(texture, 1, 0), 0xFF102030u);
}

TEST_F(KRE_TextureLoadingTest, FilesOfOneNameAndSizeAreShared)
{
    directory.Write("a/wood.bmp", PlainBmp(4, 4, 0x111111));
    directory.Write("b/wood.bmp", PlainBmp(4, 4, 0x222222));
    KRE_Texture first;
    KRE_Texture second;
    Load(first, "a\\wood.bmp");
    Load(second, "b/wood.bmp");
    EXPECT_EQ(first.current, second.current);
    EXPECT_EQ(first.slotIds[0], second.slotIds[0]);
    EXPECT_EQ(gfx->textureManager.GetCount(), 1);
    EXPECT_EQ(gfx->textureManager.GetEntry(0)->useCount, 2);
    EXPECT_EQ(second.sourceWidth, 4.0f);
}

TEST_F(KRE_TextureLoadingTest, FilesOfOneNameAndDifferentSizesStayApart)
{
    directory.Write("a/wood.bmp", PlainBmp(4, 4, 0x111111));
    directory.Write("b/wood.bmp", PlainBmp(4, 8, 0x222222));
    KRE_Texture first;
    KRE_Texture second;
    Load(first, "a/wood.bmp");
    Load(second, "b/wood.bmp");
    EXPECT_NE(first.current, second.current);
    EXPECT_EQ(gfx->textureManager.GetCount(), 2);
}

TEST_F(KRE_TextureLoadingTest, WithoutReuseNothingIsShared)
{
    directory.Write("wood.bmp", PlainBmp(4, 4, 0x111111));
    gfx->textureManager.reuse = false;
    KRE_Texture first;
    KRE_Texture second;
    Load(first, "wood.bmp");
    Load(second, "wood.bmp");
    EXPECT_NE(first.current, second.current);
}

TEST_F(KRE_TextureLoadingTest, APictureReleasedByAResetIsLoadedAgain)
{
    directory.Write("wood.bmp", PlainBmp(4, 4, 0x111111));
    KRE_Texture first;
    Load(first, "wood.bmp", 1);
    first.current->Release();
    gfx->textureManager.GetEntry(0)->pointer = nullptr;
    KRE_Texture second;
    Load(second, "wood.bmp");
    ASSERT_TRUE(second.IsValid());
    EXPECT_EQ(PixelOf(second, 0, 0) & 0xFFFFFF, 0x111111u);
    EXPECT_EQ(gfx->textureManager.GetEntry(0)->useCount, 1);
}

TEST_F(KRE_TextureLoadingTest, TheSlotIsFreedFirst)
{
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    directory.Write("b.bmp", PlainBmp(2, 2, 0));
    KRE_Texture texture;
    Load(texture, "a.bmp");
    Load(texture, "b.bmp");
    EXPECT_EQ(gfx->textureManager.GetCount(), 1);
    EXPECT_EQ(texture.width, 2);
}

TEST_F(KRE_TextureLoadingTest, AFailedLoadLeavesTheSlotEmptyUnlessItIsKept)
{
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    directory.Write("bad.bmp", "not a picture");
    KRE_Texture texture;
    Load(texture, "a.bmp");
    LoadError(texture, "bad.bmp", KRE_Gfx::kKeepTexture);
    EXPECT_TRUE(texture.IsValid());
    LoadError(texture, "bad.bmp");
    EXPECT_FALSE(texture.IsValid());
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
}

TEST_F(KRE_TextureLoadingTest, AKeptSlotReleasesItsPictureWhenTheNewOneArrives)
{
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    directory.Write("b.bmp", PlainBmp(2, 2, 0));
    KRE_Texture texture;
    Load(texture, "a.bmp");
    Load(texture, "b.bmp", KRE_Gfx::kKeepTexture);
    EXPECT_EQ(texture.width, 2);
    EXPECT_EQ(gfx->textureManager.GetCount(), 1);
}

TEST_F(KRE_TextureLoadingTest, TheNameMayBelongToTheTexture)
{
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    KRE_Texture texture;
    texture.slotNames[0].Assign("a.bmp");
    Load(texture, texture.slotNames[0].c_str());
    Load(texture, texture.slotNames[0].c_str());
    EXPECT_TRUE(texture.IsValid());
}

TEST_F(KRE_TextureLoadingTest, ModesChoosePoolAndUsage)
{
    static const struct {
        int32_t mode;
        D3DPOOL pool;
        DWORD usage;
    } cases[] = {{-1, D3DPOOL_MANAGED, 0},
                 {0, D3DPOOL_MANAGED, 0},
                 {2, D3DPOOL_MANAGED, 0},
                 {1, D3DPOOL_DEFAULT, 0},
                 {3, D3DPOOL_DEFAULT, D3DUSAGE_RENDERTARGET},
                 {0x3001, D3DPOOL_DEFAULT, 0}};
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    for (const auto& c : cases) {
        KRE_Texture texture;
        Load(texture, "a.bmp", c.mode);
        EXPECT_EQ(texture.slotDescs[0].Pool, c.pool) << c.mode;
        EXPECT_EQ(texture.slotDescs[0].Usage, c.usage) << c.mode;
    }
}

TEST_F(KRE_TextureLoadingTest, OtherModesAreAnError)
{
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    for (const int32_t mode : {4, 7, -2, 0x4000, 0x1004}) {
        KRE_Texture texture;
        EXPECT_EQ(LoadError(texture, "a.bmp", mode), "Wrong texture parameter in LoadTexture!")
            << mode;
    }
}

TEST_F(KRE_TextureLoadingTest, WithoutTextureOrNameIsAnError)
{
    EXPECT_EQ(ErrorText([&] { gfx->LoadTexture(nullptr, "a.bmp", 0, -1, -1, 1); }),
              "KRE_Texture pointer in LoadTexture is NULL pointer!");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, ""), "Invalid file name in LoadTexture");
    EXPECT_EQ(LoadError(texture, nullptr), "Invalid file name in LoadTexture");
}

TEST_F(KRE_TextureLoadingTest, AMissingFileIsAnErrorThatNamesIt)
{
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "gone.bmp"), "Can not open file gone.bmp");
}

TEST_F(KRE_TextureLoadingTest, ADirectoryIsNotAFile)
{
    directory.Write("folder.bmp/inside.txt", "x");
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, "folder.bmp"), "Can not open file folder.bmp");
}

TEST_F(KRE_TextureLoadingTest, AnAbsolutePathCausesAWarning)
{
    KRE_Texture texture;
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    Load(texture, (directory.Path() / "a.bmp").string().c_str());
    EXPECT_EQ(Warnings().rfind("Absolute file path: '", 0), 0u) << Warnings();
}

TEST_F(KRE_TextureLoadingTest, AFileThatIsNotAPictureIsAnErrorThatNamesIt)
{
    const std::string bmp = PlainBmp(8, 8, 0x123456);
    std::string noSides = bmp;
    noSides.replace(18, 8, 8, '\0');
    std::string targaWithoutSides = Tga32(1, 1, {0});
    targaWithoutSides.replace(12, 4, 4, '\0');
    static const struct {
        const char* what;
        std::string bytes;
    } cases[] = {
        {"empty", ""},
        {"one byte", "B"},
        {"text", "This is a text and not a picture at all."},
        {"cut in the file header", bmp.substr(0, 10)},
        {"cut in the picture header", bmp.substr(0, 30)},
        {"sides of 0", noSides},
        {"targa with sides of 0", targaWithoutSides},
        {"cut png", "\x89PNG\r\n\x1A\n"},
        {"cut jpg", "\xFF\xD8\xFF\xE0"},
        {"cut dds", "DDS |"},
    };
    for (const auto& c : cases) {
        directory.Write("bad.bmp", c.bytes);
        KRE_Texture texture;
        const std::string message = LoadError(texture, "bad.bmp");
        EXPECT_TRUE(StartsWith(message, kNoImage) ||
                    StartsWith(message, " D3DXCreateTextureFromFileA failed: "))
            << c.what << ": " << message;
        EXPECT_TRUE(EndsWith(message, " (file:bad.bmp)")) << c.what << ": " << message;
        EXPECT_FALSE(texture.IsValid()) << c.what;
    }
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
}

TEST_F(KRE_TextureLoadingTest, APictureOf40000PixelsASideWithoutItsPixelsIsAnError)
{
    std::string bmp = PlainBmp(8, 8, 0x123456);
    for (const size_t side : {18u, 22u})
        bmp.replace(side, 4, std::string("\x40\x9C\0\0", 4)); // 40000 = 0x9C40
    directory.Write("huge.bmp", bmp);
    KRE_Texture texture;
    EXPECT_TRUE(EndsWith(LoadError(texture, "huge.bmp"), " (file:huge.bmp)"));
}

TEST_F(KRE_TextureLoadingTest, EveryTruncatedPictureLoadsOrIsAnError)
{
    for (const std::string& whole : {PlainBmp(5, 3, 0x123456), Tga32(3, 2, {1, 2, 3, 4, 5, 6})}) {
        for (size_t size = 0; size < whole.size(); ++size) {
            directory.Write("cut.bmp", whole.substr(0, size));
            KRE_Texture texture;
            const std::string message = LoadError(texture, "cut.bmp");
            EXPECT_TRUE(message.empty() || EndsWith(message, " (file:cut.bmp)")) << message;
            EXPECT_EQ(texture.IsValid(), message.empty()) << size;
        }
    }
}

TEST_F(KRE_TextureLoadingTest, ATextureThatTheDeviceCannotMakeIsAnErrorThatNamesTheFile)
{
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    direct3D->FailAlways("CreateTexture", D3DERR_OUTOFVIDEOMEMORY);
    KRE_Texture texture;
    const std::string message = LoadError(texture, "a.bmp");
    EXPECT_EQ(message, " D3DXCreateTextureFromFileA failed: D3DERR_OUTOFVIDEOMEMORY (file:a.bmp)");
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
}

TEST_F(KRE_TextureLoadingTest, AFileWithSidesThatAreNotPowersOf2LoadsAtItsOwnSize)
{
    directory.Write("odd.bmp", PlainBmp(6, 5, 0x123456));
    gfx->caps.TextureCaps &= ~DWORD{D3DPTEXTURECAPS_POW2};
    for (const int32_t mode : {-1, static_cast<int32_t>(KRE_Gfx::kNoStretch)}) {
        KRE_Texture texture;
        Load(texture, "odd.bmp", mode);
        EXPECT_EQ(texture.width, 6);
        EXPECT_EQ(texture.height, 5);
        EXPECT_EQ(texture.axisAU, (6.0f - 0.02f) / 6.0f);
        EXPECT_EQ(Warnings(), "");
    }
}

TEST_F(KRE_TextureLoadingTest, CompressedWithMipmapsASideThatIsNotAPowerOf2IsStretchedToOne)
{
    directory.Write("odd.bmp", PlainBmp(12, 4, 0x123456));
    KRE_Texture texture;
    Load(texture, "odd.bmp", -1, D3DFMT_DXT1, 0);
    EXPECT_EQ(texture.width, 16);
    EXPECT_EQ(texture.height, 4);
    EXPECT_EQ(texture.format, D3DFMT_DXT1);
    EXPECT_EQ(texture.sourceWidth, 12.0f);
    EXPECT_EQ(texture.axisAU, (16.0f - 0.02f) / 16.0f) << "the texture's size, with stretch";
    EXPECT_EQ(Warnings(), "");
}

TEST_F(KRE_TextureLoadingTest, QuirkTheWarningOfThatWithoutStretchHasNoName)
{
    directory.Write("odd.bmp", PlainBmp(12, 4, 0x123456));
    KRE_Texture texture;
    Load(texture, "odd.bmp", KRE_Gfx::kNoStretch, D3DFMT_DXT1, 0);
    EXPECT_EQ(texture.width, 12);
    EXPECT_EQ(Warnings(), "Loading none-power of 2 texture '' with options: "
                          "mipmaps+noStretch+compressed");
}

TEST_F(KRE_TextureLoadingTest, OneLevelOrAPlainFormatIsNeverStretched)
{
    directory.Write("odd.bmp", PlainBmp(12, 4, 0x123456));
    KRE_Texture oneLevel;
    Load(oneLevel, "odd.bmp", -1, D3DFMT_DXT1, 1);
    EXPECT_EQ(oneLevel.width, 12);
    oneLevel.Free();
    KRE_Texture plain;
    Load(plain, "odd.bmp", -1, D3DFMT_X8R8G8B8, 0);
    EXPECT_EQ(plain.width, 12);
    EXPECT_EQ(plain.levelCount, 4); // 12, 6, 3, 1
}

TEST_F(KRE_TextureLoadingTest, FiltersFollowFromSidesFormatAndStretch)
{
    constexpr int32_t kPlain = D3DFMT_X8R8G8B8;
    constexpr int32_t kBlocks = D3DFMT_DXT1;
    constexpr int32_t kStretch = -1;
    constexpr int32_t kNoStretch = KRE_Gfx::kNoStretch;
    static const struct {
        const char* what;
        const char* file;
        bool onlyPowersOf2;
        int32_t mode, format, mipLevels;
        DWORD filter, mipFilter;
        UINT width, height; // 0: the file's
    } cases[] = {
        {"powers of 2", "even.bmp", false, kStretch, kPlain, 0, D3DX_FILTER_LINEAR, D3DX_FILTER_BOX,
         0, 0},
        {"not stretched", "even.bmp", false, kNoStretch, kPlain, 0, D3DX_FILTER_NONE,
         D3DX_FILTER_BOX, 0, 0},
        {"an odd width", "wide.bmp", false, kStretch, kPlain, 0, D3DX_FILTER_LINEAR,
         D3DX_FILTER_LINEAR, 0, 0},
        {"an odd height", "high.bmp", false, kStretch, kPlain, 0, D3DX_FILTER_LINEAR,
         D3DX_FILTER_LINEAR, 0, 0},
        {"odd, not stretched", "wide.bmp", false, kNoStretch, kPlain, 0, D3DX_FILTER_NONE,
         D3DX_FILTER_LINEAR, 0, 0},
        {"odd, one level of blocks", "wide.bmp", false, kStretch, kBlocks, 1, D3DX_FILTER_LINEAR,
         D3DX_FILTER_LINEAR, 0, 0},
        {"odd, levels of blocks", "wide.bmp", false, kStretch, kBlocks, 0, D3DX_FILTER_LINEAR,
         D3DX_FILTER_BOX, 16, 4},
        {"the same, not stretched", "wide.bmp", false, kNoStretch, kBlocks, 0, D3DX_FILTER_NONE,
         D3DX_FILTER_BOX, 0, 0},
        {"odd on a device that rounds", "wide.bmp", true, kStretch, kPlain, 0, D3DX_FILTER_LINEAR,
         D3DX_FILTER_BOX, 0, 0},
    };
    directory.Write("even.bmp", PlainBmp(8, 4, 0x123456));
    directory.Write("wide.bmp", PlainBmp(12, 4, 0x123456));
    directory.Write("high.bmp", PlainBmp(4, 12, 0x123456));
    const DWORD others = gfx->caps.TextureCaps & ~DWORD{D3DPTEXTURECAPS_POW2};
    for (const auto& c : cases) {
        gfx->caps.TextureCaps = others | (c.onlyPowersOf2 ? D3DPTEXTURECAPS_POW2 : 0);
        KRE_Texture texture;
        Load(texture, c.file, c.mode, c.format, c.mipLevels);
        EXPECT_EQ(LastCreation().filter, c.filter) << c.what;
        EXPECT_EQ(LastCreation().mipFilter, c.mipFilter) << c.what;
        EXPECT_EQ(LastCreation().width, c.width) << c.what;
        EXPECT_EQ(LastCreation().height, c.height) << c.what;
    }
}

TEST_F(KRE_TextureLoadingTest, WithoutStretchTheRectangleIsOfTheFilesSize)
{
    directory.Write("odd.bmp", PlainBmp(12, 6, 0x123456));
    KRE_Texture stretched;
    Load(stretched, "odd.bmp", -1, D3DFMT_DXT1, 0); // 16 by 8
    EXPECT_EQ(stretched.axisAU, (16.0f - 0.02f) / 16.0f);
    EXPECT_EQ(stretched.axisBV, (8.0f - 0.02f) / 8.0f);
    KRE_Texture plain;
    Load(plain, "odd.bmp", KRE_Gfx::kNoStretch); // shares the picture of 16 by 8
    ASSERT_EQ(plain.current, stretched.current);
    EXPECT_EQ(plain.axisAU, (12.0f - 0.02f) / 16.0f);
    EXPECT_EQ(plain.axisBV, (6.0f - 0.02f) / 8.0f);
    EXPECT_EQ(plain.sourceWidth, 12.0f);
    EXPECT_EQ(plain.sourceHeight, 6.0f);
}

TEST_F(KRE_TextureLoadingTest, MipLevelsOf0AreTheFullChain)
{
    directory.Write("a.bmp", PlainBmp(8, 2, 0));
    KRE_Texture texture;
    Load(texture, "a.bmp", -1, -1, 0);
    EXPECT_EQ(texture.levelCount, 4); // 8, 4, 2, 1
}

TEST_F(KRE_TextureLoadingTest, ADeviceWithoutMipmapsIsAskedFor0Levels)
{
    // The real device below supports mip maps, so the 0 gives the full chain.
    directory.Write("a.bmp", PlainBmp(8, 2, 0));
    gfx->caps.TextureCaps &= ~DWORD{D3DPTEXTURECAPS_MIPMAP};
    KRE_Texture texture;
    Load(texture, "a.bmp", -1, -1, 1);
    EXPECT_EQ(texture.levelCount, 4);
}

TEST_F(KRE_TextureLoadingTest, A24BitPictureOnA16BitDisplayIsR5G6B5)
{
    directory.Write("a.bmp", PlainBmp(4, 4, 0xFF0000));
    gfx->displayFormat = D3DFMT_R5G6B5;
    KRE_Texture texture;
    Load(texture, "a.bmp");
    EXPECT_EQ(texture.format, D3DFMT_R5G6B5);
    EXPECT_EQ(PixelOf(texture, 0, 0), 0xFFF80000u);
}

TEST_F(KRE_TextureLoadingTest, NoTexturesGivesEveryLoadTheSamePicture)
{
    directory.Write("a.bmp", PlainBmp(8, 8, 0xFF0000));
    directory.Write("b.bmp", PlainBmp(2, 2, 0x00FF00));
    directory.Write("list.ifl", "a.bmp\nb.bmp\n");
    gfx->noTextures = 1;
    KRE_Texture first;
    KRE_Texture second;
    KRE_Texture sequence;
    Load(first, "a.bmp");
    Load(second, "b.bmp");
    Load(sequence, "list.ifl");
    EXPECT_TRUE(first.IsValid());
    EXPECT_EQ(first.current, second.current);
    EXPECT_EQ(first.current, gfx->screenTexture.current);
    ASSERT_EQ(sequence.sequenceCount, 2);
    EXPECT_EQ(sequence.frames[0], first.current);
    EXPECT_EQ(sequence.frames[1], first.current);
    EXPECT_EQ(gfx->textureManager.GetCount(), 1);
    EXPECT_EQ(gfx->textureManager.GetEntry(0)->useCount, 5);
}

TEST_F(KRE_TextureLoadingTest, ResourceNameIsTheLeafWithTheSize)
{
    directory.Write("deep/wood.bmp", "12345");
    String name;
    gfx->MakeResourceName(&name, "deep\\wood.bmp");
    EXPECT_STREQ(name.c_str(), "wood.bmp_5");
    directory.Write("deep/empty.bmp", "");
    gfx->MakeResourceName(&name, "deep\\empty.bmp");
    EXPECT_STREQ(name.c_str(), "empty.bmp_0");
    gfx->MakeResourceName(&name, "deep\\gone.bmp");
    EXPECT_STREQ(name.c_str(), "gone.bmp");
}

TEST_F(KRE_TextureLoadingTest, ResourceNameOfAMissingFileIsMadeInSilence)
{
    String name;
    gfx->MakeResourceName(&name, "gone.bmp");
    const std::string log = directory.Has("logfile.txt") ? directory.Read("logfile.txt") : "";
    EXPECT_EQ(log.find("gone.bmp"), std::string::npos) << log;
}

TEST_F(KRE_TextureLoadingTest, ALongNameLoads)
{
    const std::string name = std::string(200, 'n') + ".bmp";
    const std::string path = std::string(200, 'd') + "/" + name;
    directory.Write(path, PlainBmp(4, 4, 0));
    KRE_Texture texture;
    Load(texture, path.c_str());
    EXPECT_TRUE(texture.IsValid());
}
