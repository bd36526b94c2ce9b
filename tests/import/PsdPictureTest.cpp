#include "import/PsdPicture.h"

#include <gmock/gmock.h>

#include <string>

using testing::ElementsAre;

namespace {

const std::string kEmptySections(12, '\0');

/// Of two pixels beside each other.
std::string Header(char channels, char bits, char mode = 3)
{
    return std::string("8BPS\0\1\0\0\0\0\0\0\0", 13) + channels +
           std::string("\0\0\0\1\0\0\0\2\0", 9) + bits + '\0' + mode;
}

std::string Plain(char channels, char bits, const std::string& planes)
{
    return Header(channels, bits) + kEmptySections + std::string(2, '\0') + planes;
}

std::vector<uint8_t> PixelsOf(const std::string& file)
{
    PsdPicture picture;
    if (!ReadPsd(file, picture))
        return {};
    EXPECT_EQ(picture.width, 2u);
    EXPECT_EQ(picture.height, 1u);
    return picture.rgba;
}

} // namespace

TEST(PsdPicture, ChannelsFollowOneAfterTheOther)
{
    EXPECT_THAT(PixelsOf(Plain(3, 8, "\1\2\3\4\5\6")), ElementsAre(1, 3, 5, 255, 2, 4, 6, 255));
}

TEST(PsdPicture, SamplesOf16BitsKeepTheirHighByte)
{
    EXPECT_THAT(PixelsOf(Plain(3, 16, "\1x\2x\3x\4x\5x\6x")),
                ElementsAre(1, 3, 5, 255, 2, 4, 6, 255));
}

TEST(PsdPicture, SectionsBeforeThePictureAreSkipped)
{
    const std::string sections("\0\0\0\1p\0\0\0\2rr\0\0\0\3lll", 18);
    EXPECT_THAT(PixelsOf(Header(3, 8) + sections + std::string("\0\0\1\2\3\4\5\6", 8)),
                ElementsAre(1, 3, 5, 255, 2, 4, 6, 255));
}

// Red as two bytes, green as one repeated; blue begins with a run of nothing.
TEST(PsdPicture, RunsAreUnpacked)
{
    const std::string lengths(6, '\0');
    const std::string runs("\1\x0A\x0B\xFF\x0C\x80\xFF\x0D", 8);
    EXPECT_THAT(PixelsOf(Header(3, 8) + kEmptySections + std::string("\0\1", 2) + lengths + runs),
                ElementsAre(10, 12, 13, 255, 11, 12, 13, 255));
}

// 0.4 x 200 + 0.6 x 255 = 233, with an alpha of 102 = 0.4 x 255; 100 is darker than any colour gives there.
TEST(PsdPicture, ColorsUnderAlphaAreThoseWithoutTheWhiteBehindThem)
{
    EXPECT_THAT(PixelsOf(Plain(4, 8, std::string("\xE9\x64\xE9\x64\xE9\xFF\x66\x66", 8))),
                ElementsAre(200, 200, 200, 102, 0, 0, 255, 102));
    EXPECT_THAT(PixelsOf(Plain(4, 8, std::string("\x07\x08\x09\x0A\x0B\x0C\0\xFF", 8))),
                ElementsAre(7, 9, 11, 0, 8, 10, 12, 255))
        << "there is no colour to find under no alpha";
}

TEST(PsdPicture, CutFilesAreRefused)
{
    const std::string plain = Plain(3, 8, "\1\2\3\4\5\6");
    const std::string packed = Header(3, 8) + kEmptySections + std::string("\0\1", 2) +
                               std::string(6, '\0') + std::string("\1\x0A\x0B\xFF\x0C\xFF\x0D", 7);
    for (const std::string& file : {plain, packed}) {
        EXPECT_FALSE(PixelsOf(file).empty());
        for (size_t length = 0; length < file.size(); ++length)
            EXPECT_TRUE(PixelsOf(file.substr(0, length)).empty()) << length;
    }
}

TEST(PsdPicture, OtherFormsAreRefused)
{
    PsdPicture picture;
    EXPECT_TRUE(ReadPsdSize(Header(3, 8), picture));
    EXPECT_FALSE(ReadPsdSize(Header(2, 8), picture)) << "too few channels";
    EXPECT_FALSE(ReadPsdSize(Header(3, 32), picture)) << "bits";
    EXPECT_FALSE(ReadPsdSize(Header(3, 8, 4), picture)) << "colours for printing";
    std::string other = Header(3, 8);
    other[5] = 2;
    EXPECT_FALSE(ReadPsdSize(other, picture)) << "files of the large form";
    other = Header(3, 8);
    other[18] = 1;
    EXPECT_FALSE(ReadPsdSize(other, picture)) << "a width of 16,777,218 pixels";
    const std::string zip = Header(3, 8) + kEmptySections + std::string("\0\2", 2) + "\1\2\3\4\5\6";
    EXPECT_TRUE(PixelsOf(zip).empty()) << "packed in another way";
    const std::string tooLong = Header(3, 8) + kEmptySections + std::string("\0\1", 2) +
                                std::string(6, '\0') + "\2\1\2\3\1\3\4\1\5\6";
    EXPECT_TRUE(PixelsOf(tooLong).empty()) << "a run that is longer than its channel";
}
