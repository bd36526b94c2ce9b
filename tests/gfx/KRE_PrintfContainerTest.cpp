#include "gfx/KRE_PrintfContainer.h"

#include "tests/gfx/TextTest.h"
#include "tests/gfx/TextureEngine.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>

using testing::ElementsAre;

using PrintfContainer = TextTest;

TEST_F(PrintfContainer, ListHoldsTwoHundredFiftySixCharacters)
{
    // 256 characters * 6 vertices = 1536, of 32 bytes each.
    EXPECT_EQ(gfx.printf.quadList.vertexCount, 1536);
    EXPECT_EQ(gfx.printf.quadList.info.stride, 32);
    EXPECT_EQ(gfx.printf.quadList.primitiveCount, 512);
}

TEST_F(PrintfContainer, OptionsAreAStack)
{
    gfx.printf.PushOptions(options);
    options.color = 0xFF112233;
    gfx.printf.PushOptions(options);
    gfx.printf.AddText("A");
    gfx.printf.PopOptions();
    gfx.printf.AddText("B");
    gfx.printf.PopOptions();
    EXPECT_EQ(gfx.printf.lines.Get(0)->entities.Get(0)->options.color, 0xFF112233u);
    EXPECT_EQ(gfx.printf.lines.Get(1)->entities.Get(0)->options.color, 0xFFFFFFFFu);
    EXPECT_EQ(RaisedBy([&] { gfx.printf.PopOptions(); }), "No text options to take back");
}

TEST_F(PrintfContainer, TextWithoutAFontIsAnError)
{
    EXPECT_EQ(RaisedBy([&] { gfx.printf.AddText("A"); }), "Tried to set invalid font");
    options.font = nullptr;
    EXPECT_EQ(RaisedBy([&] { Lay("A"); }), "Tried to set invalid font");
    EXPECT_EQ(gfx.printf.lines.Count(), 0);
}

TEST_F(PrintfContainer, FreedOneIsRecreatedWithTheDevice)
{
    Lay("A");
    gfx.printf.Free();
    EXPECT_EQ(gfx.printf.lines.Count(), 0);
    EXPECT_FALSE(gfx.printf.quadList.buffer);
    Start();
    EXPECT_TRUE(gfx.printf.quadList.buffer);
}

TEST_F(PrintfContainer, NewOrFreedOneHasNothingToDraw)
{
    KRE_PrintfContainer fresh;
    fresh.Flush();
    gfx.printf.SetFont(&font);
    gfx.printf.AddCharacter('A', 1.0f);
    gfx.printf.quadList.Unlock(); // its vertices are no longer drawn
    gfx.printf.Free();
    Calls();
    gfx.printf.Flush();
    EXPECT_THAT(Calls(), testing::IsEmpty());
}

TEST_F(PrintfContainer, TextIsOpaqueWhiteOnTheLeftUnlessItsOptionsSayOtherwise)
{
    const KRE_PrintfOptions fresh;
    EXPECT_EQ(fresh.font, nullptr);
    EXPECT_EQ(fresh.color, 0xFFFFFFFFu);
    EXPECT_EQ(fresh.alpha, 1.0f);
    EXPECT_EQ(fresh.scaleX, 1.0f);
    EXPECT_EQ(fresh.scaleY, 1.0f);
    EXPECT_EQ(fresh.alignment, 1);
    EXPECT_EQ(fresh.tab, 0.0f);
    EXPECT_EQ(fresh.background, 0u);
    EXPECT_EQ(fresh.shadow, 0);
    EXPECT_EQ(fresh.shadowColor, 0xFF000000u) << "black";
}

namespace {

class Images : public TextureEngine {
protected:
    Images()
    {
        gfx->BuildFont(font, 0xFFFFFFFF, 0xFFFFFFFF);
        gfx->SetFont(&font, 0.0f, 0);
        options.font = &font;
        direct3D->Recorder()->ClearLines();
    }
    ~Images() override { font.Free(); }

    const PrintfLine& Lay(const char* text)
    {
        gfx->printf.Clear();
        gfx->printf.PushOptions(options);
        gfx->printf.AddText(text);
        gfx->printf.PopOptions();
        return *gfx->printf.lines.Get(0);
    }

    KRE_Font font;
    KRE_PrintfOptions options;
};

} // namespace

TEST_F(Images, FileOfTheNameIsLoadedOnce)
{
    directory.Write("icon.bmp", PlainBmp(8, 4, 0x336699));
    const PrintfLine& line = Lay("A|i'icon.bmp'B|i'icon.bmp'");
    ASSERT_EQ(line.entities.Count(), 4);
    const PrintfEntity& image = *line.entities.Get(1);
    EXPECT_EQ(image.kind, PrintfEntity::kImage);
    EXPECT_EQ(image.x, 6.0f);
    EXPECT_EQ(image.width, 8.0f);
    ASSERT_NE(image.image, nullptr);
    EXPECT_EQ(PixelOf(*image.image, 0, 0) & 0xFFFFFF, 0x336699u);
    EXPECT_EQ(line.entities.Get(2)->x, 14.0f);
    EXPECT_EQ(line.entities.Get(3)->image, image.image);
    const KRE_Texture* const used = image.image; // the next text removes the lines
    EXPECT_EQ(Lay("|i'icon.bmp'").entities.Get(0)->image, used) << "used already";
    EXPECT_EQ(gfx->textureManager.GetCount(), 2) << "the font's and this one";
}

TEST_F(Images, CatalogueComesBeforeFiles)
{
    directory.Write("icon", PlainBmp(8, 8, 0x111111));
    directory.Write("other.bmp", PlainBmp(4, 4, 0x222222));
    gfx->catalogue.AddTexture("icon", "other.bmp", 0, true);
    KRE_Texture* image = Lay("|i'icon'").entities.Get(0)->image;
    EXPECT_EQ(image, gfx->catalogue.GetTexture("icon"));
}

TEST_F(Images, CatalogueNameMayContainSpaces)
{
    directory.Write("other.bmp", PlainBmp(4, 4, 0x222222));
    gfx->catalogue.AddTexture("my icon", "other.bmp", 0, true);
    EXPECT_EQ(Lay("|i'my icon'").entities.Get(0)->image, gfx->catalogue.GetTexture("my icon"));
}

TEST_F(Images, NameThatNoCatalogueCanHoldIsLookedUpAsAFile)
{
    EXPECT_STREQ(Lay("|i'\xE9'").entities.Get(0)->text.c_str(), "<not found:'\xE9'>");
}

TEST_F(Images, FileThatIsNotAPictureIsAnError)
{
    directory.Write("icon.bmp", "no picture");
    gfx->printf.PushOptions(options);
    EXPECT_NE(ErrorText([&] { gfx->printf.AddText("|i'icon.bmp'"); }), "");
}

TEST_F(Images, TallImageIsOnTheBaseline)
{
    directory.Write("tall.bmp", PlainBmp(4, 16, 0x336699));
    const PrintfLine& line = Lay("A|s05|i'tall.bmp'|RB");
    EXPECT_FLOAT_EQ(line.ascent, 8.0f);    // half of 16
    EXPECT_FLOAT_EQ(line.descent, 2.667f); // the font's: 6 - 0.6666 * 5
    gfx->drawDisabled = 1;
    direct3D->Recorder()->ClearLines();
    gfx->printf.Draw(10.0f, 20.0f);
    // Letters, picture, letters: three batches, of the font's texture and the picture's.
    const std::vector<std::string> lines = direct3D->Recorder()->LinesOf("SetTexture");
    std::vector<std::string> bound;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(bound),
                 [](const std::string& call) { return call.rfind("SetTexture 0 ", 0) == 0; });
    EXPECT_THAT(bound, ElementsAre("SetTexture 0 texture#1", "SetTexture 0 texture#2",
                                   "SetTexture 0 texture#1"));
    // The last batch: B after 6 pixels of A and 2 of the picture, its letter's top 3.333 above the
    // baseline at 20 + 8: 24.667, rounded 25.
    const KRE_TLVertex* vertex = gfx->printf.quadList.LockVertices(0, 6, D3DLOCK_READONLY);
    EXPECT_FLOAT_EQ(vertex->x, 17.75f);
    EXPECT_FLOAT_EQ(vertex->y, 24.75f);
    gfx->printf.quadList.Unlock();
}

TEST_F(Images, ImageIsDrawnAtItsOwnSizeTimesTheScale)
{
    // 4 x 16 pixels: half of it from the top, so that its bottom is on the baseline, 8 below the
    // line's top; all but 0.02 of it. At scale 2 it is 32 high.
    directory.Write("tall.bmp", PlainBmp(4, 16, 0x336699));
    static const struct {
        const char* text;
        float right, bottom;
    } cases[] = {
        {"|s05|i'tall.bmp'", 9.75f + 2.0f - 0.02f, 19.75f + 8.0f - 0.02f},
        {"|s20|i'tall.bmp'", 9.75f + 8.0f - 0.02f, 19.75f + 32.0f - 0.02f},
    };
    gfx->drawDisabled = 1;
    for (const auto& c : cases) {
        Lay(c.text);
        gfx->printf.Draw(10.0f, 20.0f);
        const KRE_TLVertex* vertex = gfx->printf.quadList.LockVertices(0, 6, D3DLOCK_READONLY);
        EXPECT_FLOAT_EQ(vertex[0].x, 9.75f) << c.text;
        EXPECT_FLOAT_EQ(vertex[0].y, 19.75f) << c.text;
        EXPECT_FLOAT_EQ(vertex[5].x, c.right) << c.text;
        EXPECT_FLOAT_EQ(vertex[5].y, c.bottom) << c.text;
        gfx->printf.quadList.Unlock();
    }
}
