#include "gfx/KRE_PrintfMarkup.h"

#include "tests/gfx/TextTest.h"

#include <cstdio>

namespace {

std::string Number(const char* format, float value)
{
    char text[32];
    std::snprintf(text, sizeof text, format, static_cast<double>(value));
    return text;
}

/// "x:text", then the colour with `#` unless white, the scale with `*` unless 1.
std::string Describe(const PrintfEntity& entity)
{
    std::string text = Number("%g:", entity.x) + entity.text.c_str();
    if (entity.options.color != 0xFFFFFFFF) {
        char color[16];
        std::snprintf(color, sizeof color, "#%08X", static_cast<unsigned>(entity.options.color));
        text += color;
    }
    if (entity.options.scaleX != 1.0f || entity.options.scaleY != 1.0f)
        text += Number("*%g", entity.options.scaleX) + Number(",%g", entity.options.scaleY);
    return text;
}

class KRE_PrintfMarkupTest : public TextTest {
protected:
    /// Pieces with `;` between them, lines with `/`.
    std::string Scan(const char* text)
    {
        Lay(text);
        std::string all;
        for (const PrintfLine* line : gfx.printf.lines) {
            all += line == gfx.printf.lines.Get(0) ? "" : "/";
            bool isFirst = true;
            for (const PrintfEntity* entity : line->entities) {
                all += isFirst ? "" : ";";
                all += Describe(*entity);
                isFirst = false;
            }
        }
        return all;
    }
};

} // namespace

// A letter takes 6 pixels. The bar has no glyph: it takes the spacing, 1 pixel.

TEST_F(KRE_PrintfMarkupTest, CommandsShapeThePieces)
{
    static const struct {
        const char* what;
        const char* text;
        const char* expected;
    } cases[] = {
        {"no command", "AB C", "0:AB C"},
        {"nothing", "", ""},
        {"two bars are one, and end the piece", "A||B", "0:A|;7:B"},
        {"three bars: the third begins a command", "A|||NB", "0:A|/0:B"},
        {"long colour", "A|CFF8000B", "0:A;6:B#FFFF8000"},
        {"long colour in small letters", "|Cfedcbab", "0:b#FFFEDCBA"},
        // 15 is 255, 8 is 136, 0 is 0: times 17
        {"short colour", "A|cF80B", "0:A;6:B#FFFF8800"},
        {"line feed", "A|NB|nC", "0:A/0:B/0:C"},
        {"line feed character", "A\nB", "0:A/0:B"},
        {"line feed keeps the options", "|CFF0000A|NB", "0:A#FFFF0000/0:B#FFFF0000"},
        {"empty lines", "|N\nA", "//0:A"},
        {"reset", "|CFF0000|S2030A|RB", "0:A#FFFF0000*2,3;12:B"},
        {"small reset", "|s20A|rB", "0:A*2,2;12:B"},
        {"three digits to the right", "A|P012B", "0:A;18:B"},
        {"two digits to the right", "A|p12B", "0:A;18:B"},
        {"both scales", "|S1520AB", "0:AB*1.5,2"},
        {"scales from 0.0 to 9.9", "|S0099A", "0:A*0,9.9"},
        {"one scale", "|s25A|s10B", "0:A*2.5,2.5;15:B"},
        {"alignment goes on in the same piece", "A|ZB|lC|tD|JE", "0:ABCDE"},
        {"image without a quote does nothing", "A|iB", "0:AB"},
        {"image without a name does nothing", "A|i''B", "0:AB"},
        {"image that cannot be found", "A|i'NO'B", "0:A<not found:'NO'>B"},
        {"name is no markup", "|i'N|NO'", "0:<not found:'N|NO'>"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Scan(c.text), c.expected) << c.what;
}

TEST_F(KRE_PrintfMarkupTest, AnythingButACommandIsText)
{
    static const struct {
        const char* what;
        const char* text;
        const char* expected;
    } cases[] = {
        {"unknown letter", "A|XB", "0:A|XB"},
        {"large I is no image", "|I'A'", "0:|I'A'"},
        {"blank", "A| B", "0:A| B"},
        {"scanning goes on at the letter", "|\nA", "0:|/0:A"},
        {"no colour digit", "|CFG0000", "0:|CFG0000"},
        {"no short colour digit", "|cF-0", "0:|cF-0"},
        {"hexadecimal digit in a distance", "|P0A1", "0:|P0A1"},
        {"no digit in a small distance", "|p+1", "0:|p+1"},
        {"no digit in a scale", "|S1.50", "0:|S1.50"},
        {"no digit in a small scale", "|s1.5", "0:|s1.5"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Scan(c.text), c.expected) << c.what;
}

TEST_F(KRE_PrintfMarkupTest, EndInsideACommandEndsTheScan)
{
    for (const char* command : {"|", "|C", "|CFF800", "|c", "|cFF", "|P", "|P12", "|p1", "|S152",
                                "|s1", "|i", "|i'", "|i'NAME"}) {
        EXPECT_EQ(Scan((std::string("AB|NC") + command).c_str()), "0:AB/0:C") << command;
    }
}

TEST_F(KRE_PrintfMarkupTest, AlignmentBelongsToTheLine)
{
    static const struct {
        const char* text;
        int32_t first, second;
    } cases[] = {
        {"A|NB", 1, 1},    {"A|ZB|NC", 1, 1},  {"A|zB|NC", 1, 1},   {"A|LB|NC", 2, 2},
        {"A|lB|NC", 2, 2}, {"A|TB|NC", 3, 3},  {"A|tB|NC", 3, 3},   {"A|JB|NC", 4, 4},
        {"A|jB|NC", 4, 4}, {"|LA|N|TB", 2, 3}, {"|TA|RB|NC", 1, 1},
    };
    for (const auto& c : cases) {
        Lay(c.text);
        EXPECT_EQ(gfx.printf.lines.Get(0)->alignment, c.first) << c.text;
        EXPECT_EQ(gfx.printf.lines.Get(1)->alignment, c.second) << c.text;
    }
}

TEST_F(KRE_PrintfMarkupTest, ResetRestoresTheInitialOptions)
{
    options.color = 0x00123456;
    options.alpha = 0.25f;
    options.alignment = kAlignRight;
    Lay("A|CFFFFFF|s10|ZB|RC");
    const PrintfLine& line = *gfx.printf.lines.Get(0);
    ASSERT_EQ(line.entities.Count(), 3);
    const KRE_PrintfOptions& changed = line.entities.Get(1)->options;
    EXPECT_EQ(changed.color, 0xFFFFFFFFu);
    EXPECT_EQ(changed.alpha, 1.0f) << "a colour is opaque";
    for (int32_t i : {0, 2}) {
        const KRE_PrintfOptions& begun = line.entities.Get(i)->options;
        EXPECT_EQ(begun.color, 0x00123456u);
        EXPECT_EQ(begun.alpha, 0.25f);
        EXPECT_EQ(begun.scaleX, 1.0f);
        EXPECT_EQ(begun.scaleY, 1.0f);
        EXPECT_EQ(begun.font, &font);
    }
    EXPECT_EQ(line.alignment, kAlignRight);
}

TEST_F(KRE_PrintfMarkupTest, EachTextBeginsWithScaleOne)
{
    options.scaleX = 3.0f;
    options.scaleY = 0.5f;
    EXPECT_EQ(Scan("A|s20B|RC"), "0:A;6:B*2,2;18:C");
}

TEST_F(KRE_PrintfMarkupTest, LongNameIsNotTruncated)
{
    const std::string name(10000, 'N');
    EXPECT_EQ(Scan(("|i'" + name + "'").c_str()), "0:<not found:'" + name + "'>");
}

TEST_F(KRE_PrintfMarkupTest, SwitchedOffEverythingIsText)
{
    EXPECT_EQ(gfx.printf.markup, 1) << "on at first";
    gfx.printf.markup = 0;
    EXPECT_EQ(Scan("|CFF0000A||B|NC\nD"), "0:|CFF0000A||B|NC/0:D");
}

TEST_F(KRE_PrintfMarkupTest, ControlCharactersAreIgnored)
{
    EXPECT_EQ(Scan("A\r\x01\x1F"
                   "B"),
              "0:AB");
    EXPECT_EQ(Scan("A\tB"), "0:A B") << "a tab without stops is a blank";
}
