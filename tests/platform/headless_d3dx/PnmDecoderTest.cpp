#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/headless_d3dx/DecodedPixels.h"

#include <gtest/gtest.h>

using namespace headless;

namespace {

using Pixels = std::vector<uint32_t>;

} // namespace

TEST(PnmDecoder, ReadsGreyAndColour)
{
    const struct {
        const char* what;
        std::string file;
        D3DFORMAT reported;
        Pixels expected;
    } cases[] = {
        {"grey", "P5 2 1 255\n" + Bytes({0, 200}), D3DFMT_L8, {0xFF000000, 0xFFC8C8C8}},
        {"colour",
         "P6\n1 2\n255\n" + Bytes({1, 2, 3, 4, 5, 6}),
         D3DFMT_X8R8G8B8,
         {0xFF010203, 0xFF040506}},
        {"comments", "P5 # 9 9\n1#x\n 1 255 " + Bytes({7}), D3DFMT_L8, {0xFF070707}},
        // 3 of 5 is 153 of 255.
        {"another range", "P5 1 1 5 " + Bytes({3}), D3DFMT_L8, {0xFF999999}},
        {"two bytes a sample, the high one first",
         "P5 1 1 65535 " + Bytes({0x80, 0x80}),
         D3DFMT_L8,
         {0xFF808080}},
        {"a sample above the range is the brightest",
         "P5 1 1 5 " + Bytes({9}),
         D3DFMT_L8,
         {0xFFFFFFFF}},
        {"samples may look like blanks", "P5 1 1 255 " + Bytes({'\n'}), D3DFMT_L8, {0xFF0A0A0A}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DecodedPixels(c.file), c.expected) << c.what;
        EXPECT_EQ(ReportedFormat(c.file), c.reported) << c.what;
    }
}

TEST(PnmDecoder, RefusesHeadersThatMakeNoSense)
{
    const std::string pixels = Repeated(64, 'x');
    static const struct {
        const char* what;
        const char* header;
    } cases[] = {
        {"text kind", "P3 1 1 255 "},
        {"no blank behind the kind", "P51 1 255 "},
        {"no width", "P5 0 1 255 "},
        {"no height", "P5 1 0 255 "},
        {"too wide", "P5 40000 1 255 "},
        {"too high", "P5 1 40000 255 "},
        {"a number that overflows", "P5 99999999999999999999 1 255 "},
        {"a negative number", "P5 -1 1 255 "},
        {"no range", "P5 1 1 0 "},
        {"range too large", "P5 1 1 65536 "},
        {"no number", "P5 1 x 255 "},
        {"no blank behind the range", "P5 1 1 255"},
        {"more pixels than bytes", "P6 100 100 255 "},
        {"endless comment", "P5 1 1 # 255 "},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(IsRefused(c.header + pixels)) << c.what;
}
