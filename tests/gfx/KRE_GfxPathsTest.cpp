#include <string>

#include "gfx/KRE_Gfx.h"
#include "tests/base/LogFixture.h"

namespace {

class KRE_GfxPathsTest : public LogFixture {
protected:
    std::string Texture(const char* name, const char* directory = "scene")
    {
        return gfx.ResolveTexturePath(name, directory).c_str();
    }
    std::string Effect(const char* name, const char* directory = "scene")
    {
        return gfx.ResolveEffectPath(name, directory).c_str();
    }

    KRE_Gfx gfx;
};

TEST_F(KRE_GfxPathsTest, CheckPathWarnsOfPathsThatAreNotPortable)
{
    static const struct {
        const char* what;
        const char* path;
        const char* warning; // null: none
    } cases[] = {
        {"relative", "maps/boat.png", nullptr},
        {"network", "\\\\host\\boat.png", "Network file accessed: '\\\\host\\boat.png'"},
        {"network prefix alone", "\\\\", "Network file accessed: '\\\\'"},
        {"drive letter", "C:\\boat.png", "Absolute file path: 'C:\\boat.png'"},
        {"drive letter alone", "C:", "Absolute file path: 'C:'"},
        {"leading slash", "/boat.png", "Absolute file path: '/boat.png'"},
        {"two slashes are no network name", "//host", "Absolute file path: '//host'"},
        {"colon further on", "ab:c", nullptr},
        {"empty", "", nullptr},
        {"one character", "/", nullptr},
        {"one backslash", "\\", nullptr},
    };
    std::string expected;
    for (const auto& c : cases) {
        EXPECT_EQ(gfx.CheckPath(c.path), c.warning == nullptr) << c.what;
        if (c.warning)
            expected += Entry(std::string("Warning:KRE_Gfx: ") + c.warning);
    }
    EXPECT_EQ(LogText(), expected);
}

TEST_F(KRE_GfxPathsTest, QuirkApostropheIsAbsoluteAndOneLeadingBackslashIsNot)
{
    EXPECT_TRUE(gfx.CheckPath("\\boat.png"));
    EXPECT_FALSE(gfx.CheckPath("'boat.png'"));
    EXPECT_EQ(LogText(), Entry("Warning:KRE_Gfx: Absolute file path: ''boat.png''"));
}

TEST_F(KRE_GfxPathsTest, WithNoDefaultPathsOnlyTheScenesDirectoryIsSearched)
{
    scratch.Write("scene/boat.png", "");
    scratch.Write("textures/sail.png", "");
    EXPECT_EQ(Texture("boat.png"), "scene\\boat.png");
    EXPECT_EQ(Texture("sail.png"), "");
    EXPECT_EQ(Texture("Q:\\art\\boat.png"), "");
}

TEST_F(KRE_GfxPathsTest, DefaultTexturePathIsSearchedForTheLeafAndTheBasePathIsNot)
{
    scratch.Write("base/boat.png", "");
    scratch.Write("textures/sail.png", "");
    scratch.Write("base/maps/pier.png", "");
    gfx.SetDefaultBasePath("base");
    gfx.SetDefaultTexturePath("textures");
    EXPECT_EQ(Texture("Q:\\art\\sail.png"), "textures\\sail.png");
    EXPECT_EQ(Texture("maps/sail.png"), "textures\\sail.png");
    EXPECT_EQ(Texture("Q:\\art\\boat.png"), "");
    EXPECT_EQ(Texture("maps/boat.png"), "");
    EXPECT_EQ(Texture("maps/pier.png"), "base\\maps/pier.png");
    scratch.Write("textures/boat.png", "");
    EXPECT_EQ(Texture("boat.png"), "base\\boat.png") << "the base path comes first";
}

TEST_F(KRE_GfxPathsTest, EffectsAreNotSearchedInTheTexturePath)
{
    scratch.Write("base/shiny.fx", "");
    scratch.Write("textures/dull.fx", "");
    gfx.SetDefaultBasePath("base");
    gfx.SetDefaultTexturePath("textures");
    EXPECT_EQ(Effect("shiny.fx"), "base\\shiny.fx");
    EXPECT_EQ(Effect("dull.fx"), "");
    EXPECT_EQ(Effect("Q:\\art\\shiny.fx"), "");
}

TEST_F(KRE_GfxPathsTest, CompiledEffectWinsOverItsSourceIfTheNamedFileIsMissing)
{
    scratch.Write("scene/shiny.fx", "");
    scratch.Write("scene/shiny.fxo", "");
    EXPECT_EQ(Effect("shiny.fx"), "scene\\shiny.fx") << "the name as given is tried first";
    EXPECT_EQ(Effect("shiny"), "scene\\shiny.fxo");
    std::filesystem::remove(scratch.Path() / "scene/shiny.fx");
    EXPECT_EQ(Effect("shiny.fx"), "scene\\shiny.fxo");
    std::filesystem::remove(scratch.Path() / "scene/shiny.fxo");
    scratch.Write("scene/shiny.fx", "");
    EXPECT_EQ(Effect("shiny"), "scene\\shiny.fx");
    EXPECT_EQ(Effect("shiny.fxo"), "scene\\shiny.fx");
    scratch.Write("scene/shiny", "");
    EXPECT_EQ(Effect("shiny"), "scene\\shiny") << "the bare name is tried first";
}

TEST_F(KRE_GfxPathsTest, ExtensionsOfEffectsNeedNoDefaultPath)
{
    scratch.Write("scene/shiny.fxo", "");
    EXPECT_EQ(Effect("shiny.fx"), "scene\\shiny.fxo");
    EXPECT_EQ(Effect("shiny"), "scene\\shiny.fxo");
    gfx.SetDefaultTexturePath("textures");
    EXPECT_EQ(Effect("shiny.fx"), "scene\\shiny.fxo") << "and they stay with one";
}

TEST_F(KRE_GfxPathsTest, TexturesHaveNoAlternativeExtensions)
{
    gfx.SetDefaultTexturePath("textures");
    scratch.Write("scene/boat.fx", "");
    scratch.Write("scene/boat.fxo", "");
    EXPECT_EQ(Texture("boat.png"), "");
}

TEST_F(KRE_GfxPathsTest, ChangedDefaultPathReplacesThePreviousOne)
{
    scratch.Write("old/boat.png", "");
    scratch.Write("new/sail.png", "");
    gfx.SetDefaultTexturePath("old");
    gfx.SetDefaultTexturePath("new/");
    EXPECT_STREQ(gfx.GetDefaultTexturePath().c_str(), "new/") << "stored as given";
    EXPECT_EQ(Texture("boat.png"), "");
    EXPECT_EQ(Texture("sail.png"), "new/sail.png");
    gfx.SetDefaultTexturePath(nullptr);
    EXPECT_EQ(Texture("sail.png"), "");
    gfx.SetDefaultBasePath("new");
    EXPECT_STREQ(gfx.GetDefaultBasePath().c_str(), "new");
    EXPECT_EQ(Texture("sail.png"), "new\\sail.png");
}

} // namespace
