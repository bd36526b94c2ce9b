#include "gfx/TextureSearchSink.h"
#include "tests/gfx/TextureEngine.h"

using Textures = TextureEngine;
using CreateTexture = TextureEngine;

TEST_F(Textures, ChooseTheFormatByTheFile)
{
    static const struct {
        const char* what;
        int32_t compression;
        D3DFORMAT display, file, expected;
    } cases[] = {
        {"as it is", 0, D3DFMT_X8R8G8B8, D3DFMT_X8R8G8B8, D3DFMT_UNKNOWN},
        {"24 bits on a 16-bit display", 0, D3DFMT_R5G6B5, D3DFMT_X8R8G8B8, D3DFMT_R5G6B5},
        {"24 bits without the spare byte", 0, D3DFMT_R5G6B5, D3DFMT_R8G8B8, D3DFMT_R5G6B5},
        {"alpha on a 16-bit display", 0, D3DFMT_R5G6B5, D3DFMT_A8R8G8B8, D3DFMT_UNKNOWN},
        {"X1R5G5B5 on any display", 0, D3DFMT_X8R8G8B8, D3DFMT_X1R5G5B5, D3DFMT_R5G6B5},
        {"DXT3 without compression", 0, D3DFMT_X8R8G8B8, D3DFMT_DXT3, D3DFMT_UNKNOWN},
        {"DXT3 stays", 1, D3DFMT_X8R8G8B8, D3DFMT_DXT3, D3DFMT_DXT3},
        {"A8R8G8B8 compressed", 1, D3DFMT_X8R8G8B8, D3DFMT_A8R8G8B8, D3DFMT_DXT5},
        {"A1R5G5B5 compressed", 2, D3DFMT_X8R8G8B8, D3DFMT_A1R5G5B5, D3DFMT_DXT5},
        {"A4R4G4B4 compressed", 1, D3DFMT_R5G6B5, D3DFMT_A4R4G4B4, D3DFMT_DXT5},
        {"X8R8G8B8 compressed", 1, D3DFMT_R5G6B5, D3DFMT_X8R8G8B8, D3DFMT_DXT1},
        {"A8L8 compressed", 1, D3DFMT_X8R8G8B8, D3DFMT_A8L8, D3DFMT_DXT1},
    };
    for (const auto& c : cases) {
        gfx->textureCompression = c.compression;
        gfx->displayFormat = c.display;
        D3DXIMAGE_INFO info = {};
        info.Width = info.Height = 256;
        info.Format = c.file;
        EXPECT_EQ(gfx->ChooseTextureFormat(info), c.expected) << c.what;
    }
}

TEST_F(Textures, SmallPicturesStayUncompressed)
{
    static const struct {
        const char* what;
        UINT width, height;
        int32_t minimum;
        D3DFORMAT expected;
    } cases[] = {
        {"exactly the limit", 256, 256, 65536, D3DFMT_DXT1},
        {"below the limit", 256, 128, 65536, D3DFMT_UNKNOWN},
        {"rounded up to the limit", 129, 129, 65536, D3DFMT_DXT1},
        {"sides whose product exceeds 32 bits", 70000, 70000, 2147483647, D3DFMT_DXT1},
        {"sides without a next power of 2", 0xFFFFFFFF, 0xFFFFFFFF, 1, D3DFMT_UNKNOWN},
        {"no limit", 1, 1, 0, D3DFMT_DXT1},
        {"limit below 0", 1, 1, -1, D3DFMT_DXT1},
    };
    gfx->textureCompression = 1;
    for (const auto& c : cases) {
        gfx->pixelsForCompression = c.minimum;
        D3DXIMAGE_INFO info = {};
        info.Width = c.width;
        info.Height = c.height;
        info.Format = D3DFMT_X8R8G8B8;
        EXPECT_EQ(gfx->ChooseTextureFormat(info), c.expected) << c.what;
    }
}

TEST_F(Textures, CheckFormatAsksForTheUsageOfTheMode)
{
    gfx->displayFormat = D3DFMT_X8R8G8B8;
    static const struct {
        int32_t mode;
        const char* usage;
    } cases[] = {
        {0, " 0 "}, {3, "D3DUSAGE_RENDERTARGET"}, {5, "D3DUSAGE_DEPTHSTENCIL"}, {1, " 0 "}};
    for (const auto& c : cases) {
        direct3D->ClearLines();
        gfx->CheckFormat(D3DFMT_A8R8G8B8, c.mode);
        const auto lines = direct3D->Recorder()->LinesOf("CheckDeviceFormat");
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_NE(lines[0].find(c.usage), std::string::npos) << lines[0];
        EXPECT_NE(lines[0].find("D3DRTYPE_TEXTURE"), std::string::npos) << lines[0];
        EXPECT_NE(lines[0].find("D3DFMT_A8R8G8B8"), std::string::npos) << lines[0];
        EXPECT_NE(lines[0].find("D3DFMT_X8R8G8B8"), std::string::npos) << lines[0];
    }
}

TEST_F(Textures, AFormatThatIsNotSupportedIsAWarning)
{
    EXPECT_EQ(gfx->CheckFormat(D3DFMT_A8R8G8B8, 0), 1);
    direct3D->FailNext("CheckDeviceFormat", D3DERR_NOTAVAILABLE);
    EXPECT_EQ(gfx->CheckFormat(D3DFMT_A8R8G8B8, 3), 0);
    EXPECT_EQ(Warnings(), "Texture format 21 mode 3 not supported by device");
}

TEST_F(Textures, CompressionNeedsItsFormats)
{
    gfx->SetTextureCompression(2, 1000);
    EXPECT_EQ(gfx->textureCompression, 2);
    EXPECT_EQ(gfx->pixelsForCompression, 1000);

    direct3D->FailAlways("CheckDeviceFormat", D3DERR_NOTAVAILABLE, "D3DFMT_DXT5");
    EXPECT_EQ(ErrorText([&] { gfx->SetTextureCompression(2, 1); }),
              "Texture compression DXT5 not supported by hardware");
    EXPECT_EQ(gfx->pixelsForCompression, 1000);
    gfx->SetTextureCompression(1, 2000);
    EXPECT_EQ(gfx->pixelsForCompression, 2000);

    direct3D->ClearFailures();
    direct3D->FailAlways("CheckDeviceFormat", D3DERR_NOTAVAILABLE, "D3DFMT_DXT1");
    EXPECT_EQ(ErrorText([&] { gfx->SetTextureCompression(1, 1); }),
              "Texture compression DXT1 not supported by hardware");
    gfx->SetTextureCompression(0, 1);
    EXPECT_EQ(gfx->textureCompression, 0);
}

TEST_F(Textures, ASinkIsCalledForEachSearchForATexture)
{
    static std::vector<std::string> told;
    told.clear();
    gTextureSearchSink = [](const char* name, const char* path) {
        told.push_back(std::string(name) + ">" + path);
    };
    String path;
    EXPECT_FALSE(gfx->FindTextureFile(&path, "gone.png", ""));
    EXPECT_FALSE(gfx->FindEffectFile(&path, "gone.fx", ""));
    gTextureSearchSink = nullptr;
    EXPECT_FALSE(gfx->FindTextureFile(&path, "gone too.png", ""));
    EXPECT_EQ(told, std::vector<std::string>{"gone.png>"});
}

TEST_F(Textures, FindTextureFileLooksInItsPlacesInOrder)
{
    directory.Write("scene/one.bmp", "");
    directory.Write("base/one.bmp", "");
    directory.Write("base/two.bmp", "");
    directory.Write("maps/two.bmp", "");
    directory.Write("maps/three.bmp", "");
    directory.Write("maps/below/four.bmp", "");
    gfx->SetDefaultBasePath("base");
    gfx->SetDefaultTexturePath("maps");
    static const struct {
        const char* name;
        bool found;
        const char* path;
    } cases[] = {
        {"one.bmp", true, "scene\\one.bmp"},
        {"two.bmp", true, "base\\two.bmp"},
        {"three.bmp", true, "maps\\three.bmp"},
        {"C:\\work\\three.bmp", true, "maps\\three.bmp"},
        {"elsewhere\\three.bmp", true, "maps\\three.bmp"},
        {"four.bmp", false, "four.bmp"},
        {"base/two.bmp", true, "base/two.bmp"},
    };
    for (const auto& c : cases) {
        String path;
        const char* referrer = c.name[0] == 'b' ? "" : "scene";
        EXPECT_EQ(gfx->FindTextureFile(&path, c.name, referrer), c.found) << c.name;
        EXPECT_STREQ(path.c_str(), c.path) << c.name;
    }
}

TEST_F(Textures, ALeafBesideTheSceneIsUsedWhenAllPlacesFail)
{
    for (const char* name : {"scene/p.bmp", "scene/q.bmp", "base/maps/q.bmp", "maps/r.bmp",
                             "scene/r.bmp", "scene/s.fx"})
        directory.Write(name, "");
    gfx->SetDefaultBasePath("base");
    gfx->SetDefaultTexturePath("maps");
    static const struct {
        const char* what;
        const char* name;
        const char* directory;
        const char* path; // empty: not found
    } cases[] = {
        {"drive", "C:\\art\\p.bmp", "scene", "scene\\p.bmp"},
        {"from the root", "/nowhere/p.bmp", "scene/", "scene/p.bmp"},
        {"directory", "art/p.bmp", "scene", "scene\\p.bmp"},
        {"directory above", "..\\art\\p.bmp", "scene", "scene\\p.bmp"},
        {"the base path goes first", "maps\\q.bmp", "scene", "base\\maps\\q.bmp"},
        {"the texture path goes first", "art\\r.bmp", "scene", "maps\\r.bmp"},
        {"another leaf", "C:\\art\\t.bmp", "scene", ""},
        {"no other extension", "C:\\art\\s.fxo", "scene", ""},
        {"no leaf", "C:\\art\\", "scene", ""},
        {"a drive without a directory", "C:s.fx", "scene", ""},
        {"nothing", "", "scene", ""},
        {"in the current directory", "C:\\art\\here.bmp", "", "here.bmp"},
    };
    directory.Write("here.bmp", "");
    for (const auto& c : cases) {
        String path;
        const bool isFound = c.path[0] != 0;
        EXPECT_EQ(gfx->FindTextureFile(&path, c.name, c.directory), isFound) << c.what;
        EXPECT_STREQ(path.c_str(), isFound ? c.path : c.name) << c.what;
        EXPECT_STREQ(gfx->LocateTexture(c.name, c.directory).c_str(), c.path) << c.what;
    }
    EXPECT_TRUE(gfx->ResolveTexturePath("C:\\art\\p.bmp", "scene").IsEmpty()) << "as it was";
}

TEST_F(Textures, EffectsAreNotFoundByTheirLeaves)
{
    directory.Write("scene/s.fx", "");
    String path;
    EXPECT_FALSE(gfx->FindEffectFile(&path, "C:\\art\\s.fx", "scene"));
    EXPECT_STREQ(path.c_str(), "C:\\art\\s.fx");
}

TEST_F(Textures, EachTextureFoundByItsLeafIsReportedOnce)
{
    directory.Write("scene/p.bmp", "");
    directory.Write("scene/q.bmp", "");
    directory.Write("other/p.bmp", "");
    String path;
    for (int time = 0; time < 3; ++time) {
        gfx->FindTextureFile(&path, "C:\\art\\p.bmp", "scene");
        gfx->FindTextureFile(&path, "art\\q.bmp", "scene");
        gfx->FindTextureFile(&path, "p.bmp", "scene"); // found at its path
        gfx->FindTextureFile(&path, "C:\\art\\gone.bmp", "scene");
    }
    gfx->FindTextureFile(&path, "C:\\art\\p.bmp", "other");
    std::string log = directory.Read("logfile.txt");
    for (const char* told : {"'C:\\art\\p.bmp' is not in its place, taken from beside the scene: "
                             "'scene\\p.bmp'",
                             "'art\\q.bmp' is not in its place, taken from beside the scene: "
                             "'scene\\q.bmp'",
                             "'C:\\art\\p.bmp' is not in its place, taken from beside the scene: "
                             "'other\\p.bmp'"}) {
        const std::string warning = std::string("Warning:KRE_Gfx: Texture ") + told;
        const size_t at = log.find(warning);
        ASSERT_NE(at, std::string::npos) << told << "\n" << log;
        EXPECT_EQ(log.find(warning, at + 1), std::string::npos) << told;
    }
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 3) << log;
}

TEST_F(Textures, ASinkIsCalledWithTheLeafThatIsUsed)
{
    static std::vector<std::string> told;
    told.clear();
    gTextureSearchSink = [](const char* name, const char* path) {
        told.push_back(std::string(name) + ">" + path);
    };
    directory.Write("p.bmp", "");
    String path;
    EXPECT_TRUE(gfx->FindTextureFile(&path, "C:\\art\\p.bmp", ""));
    gTextureSearchSink = nullptr;
    EXPECT_EQ(told, std::vector<std::string>{"C:\\art\\p.bmp>p.bmp"});
}

TEST_F(Textures, FindEffectFileTriesTheExtensionsOfEffects)
{
    directory.Write("scene/shiny.fxo", "");
    String path;
    EXPECT_TRUE(gfx->FindEffectFile(&path, "shiny.fx", "scene"));
    EXPECT_STREQ(path.c_str(), "scene\\shiny.fxo");
    EXPECT_FALSE(gfx->FindEffectFile(&path, "dull.fx", "scene"));
    EXPECT_STREQ(path.c_str(), "dull.fx");
}

TEST_F(CreateTexture, MakesAnEmptyPicture)
{
    KRE_Texture texture;
    gfx->CreateTexture(&texture, 16, 8, -1, D3DFMT_A4R4G4B4, 0);
    EXPECT_EQ(texture.width, 16);
    EXPECT_EQ(texture.height, 8);
    EXPECT_EQ(texture.format, D3DFMT_A4R4G4B4);
    EXPECT_EQ(texture.levelCount, 5); // 16, 8, 4, 2, 1
    EXPECT_EQ(texture.textureIsDynamic, 1);
    EXPECT_EQ(texture.slotDefaultPool[0], 0);
    EXPECT_TRUE(texture.quad);
    ASSERT_EQ(gfx->textureManager.GetCount(), 1);
    EXPECT_STREQ(gfx->textureManager.GetEntry(0)->name, "");
}

TEST_F(CreateTexture, ADefaultFormatIsTheBackBuffers)
{
    gfx->backBufferFormat = D3DFMT_R5G6B5;
    KRE_Texture texture;
    gfx->CreateTexture(&texture, 4, 4, 4, -1, 1);
    EXPECT_EQ(texture.format, D3DFMT_R5G6B5);
}

TEST_F(CreateTexture, ModesChoosePoolAndUsage)
{
    static const struct {
        int32_t mode;
        D3DPOOL pool;
        DWORD usage;
    } cases[] = {{-1, D3DPOOL_MANAGED, 0},
                 {1, D3DPOOL_DEFAULT, 0},
                 {2, D3DPOOL_SYSTEMMEM, 0},
                 {3, D3DPOOL_DEFAULT, D3DUSAGE_RENDERTARGET},
                 {4, D3DPOOL_MANAGED, 0}};
    for (const auto& c : cases) {
        KRE_Texture texture;
        gfx->CreateTexture(&texture, 4, 4, c.mode, D3DFMT_X8R8G8B8, 1);
        EXPECT_EQ(texture.slotDescs[0].Pool, c.pool) << c.mode;
        EXPECT_EQ(texture.slotDescs[0].Usage, c.usage) << c.mode;
        EXPECT_EQ(texture.slotDefaultPool[0], c.pool == D3DPOOL_DEFAULT) << c.mode;
    }
}

TEST_F(CreateTexture, WrongUseIsAnError)
{
    EXPECT_EQ(ErrorText([&] { gfx->CreateTexture(nullptr, 4, 4, -1, -1, 1); }),
              "KRE_Texture pointer in CreateTexture is NULL pointer!");
    for (const int32_t mode : {0, 5, -2, 0x1000}) {
        KRE_Texture texture;
        EXPECT_EQ(ErrorText([&] { gfx->CreateTexture(&texture, 4, 4, mode, -1, 1); }),
                  "Wrong texture parameter in CreateTexture!");
    }
}

TEST_F(CreateTexture, WhatTheDeviceRefusesIsAnError)
{
    KRE_Texture texture;
    direct3D->FailNext("CreateTexture", D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(ErrorText([&] { gfx->CreateTexture(&texture, 4, 4, -1, -1, 1); }),
              " D3DXCreateTexture failed: D3DERR_OUTOFVIDEOMEMORY ");
    EXPECT_FALSE(texture.IsValid());
    EXPECT_EQ(ErrorText([&] { gfx->CreateTexture(&texture, 0, 4, -1, -1, 1); }),
              " D3DXCreateTexture failed: D3DERR_INVALIDCALL ");
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
}

TEST_F(CreateTexture, SidesGoUpToPowersOf2WhereTheDeviceNeedsThem)
{
    gfx->caps.TextureCaps |= D3DPTEXTURECAPS_POW2;
    KRE_Texture texture;
    gfx->CreateTexture(&texture, 5, 8, -1, -1, 1);
    EXPECT_EQ(texture.width, 8);
    EXPECT_EQ(texture.height, 8);
}

TEST_F(CreateTexture, FillsTheCurrentFrameOfASequence)
{
    KRE_Texture texture;
    texture.CreateSequence(2, false);
    texture.SelectFrame(1);
    gfx->CreateTexture(&texture, 4, 4, -1, -1, 1);
    EXPECT_NE(texture.frames[1], nullptr);
    EXPECT_EQ(texture.frames[0], nullptr);
    EXPECT_EQ(texture.slotTextures[0], nullptr);
}

TEST_F(CreateTexture, PlaceholderIsSmallAndGrey)
{
    KRE_Texture texture;
    gfx->MakePlaceholder(&texture);
    EXPECT_EQ(texture.width, 4);
    EXPECT_EQ(texture.height, 4);
    EXPECT_EQ(texture.locked, 0);
    EXPECT_EQ(PixelOf(texture, 0, 0), 0xFF969696u);
    EXPECT_EQ(PixelOf(texture, 3, 3), 0xFF969696u);
}

TEST_F(Textures, NothingIsLeftOfThemAfterTheEngine)
{
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    gfx->catalogue.AddTexture("a", "a.bmp", 0, true);
    gfx->catalogue.GetTexture("a");
    gfx->MakePlaceholder(&gfx->screenTexture);
    gfx->videoSources[0].width = gfx->videoSources[0].height = 4;
    {
        KRE_Texture video;
        Load(video, ">>Video0");
    }
    gfx->FreeTextures();
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
    EXPECT_FALSE(gfx->videoSources[0].texture);
    EXPECT_EQ(gfx->catalogue.GetTexture("a"), nullptr);
}
