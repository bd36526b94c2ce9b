#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/headless_d3dx/DecodedPixels.h"

#include <gtest/gtest.h>

using namespace headless;

namespace {

using Pixels = std::vector<uint32_t>;

// Overwrites bytes at `offset` from the first occurrence of `marker`.
std::string WithBytesAt(std::string file, const std::string& marker, size_t offset,
                        const std::string& bytes)
{
    const size_t at = file.find(marker);
    EXPECT_NE(at, std::string::npos);
    return file.replace(at + offset, bytes.size(), bytes);
}

const std::string kFrame = "\xFF\xC0";

} // namespace

// 128 + 64 = 192 and 128 - 100 = 28, exactly: see JpegParts.
TEST(JpegDecoder, ReadsGrey)
{
    EXPECT_EQ(DecodedPixels(JpegFile({3, 2, {64}})), Pixels(6, 0xFFC0C0C0));
    EXPECT_EQ(DecodedPixels(JpegFile({3, 2, {-100}})), Pixels(6, 0xFF1C1C1C));
}

TEST(JpegDecoder, ReportsGreyAndColour)
{
    EXPECT_EQ(ReportedFormat(JpegFile({8, 8, {64}})), D3DFMT_L8);
    EXPECT_EQ(ReportedFormat(JpegFile({8, 8, {64, 64, 64}})), D3DFMT_X8R8G8B8);
}

TEST(JpegDecoder, RefusesFourComponents)
{
    EXPECT_TRUE(IsRefused(JpegFile({8, 8, {64, 64, 64, 64}})));
    EXPECT_TRUE(IsRefused(JpegFile({8, 8, {64, 64}})));
}

TEST(JpegDecoder, RefusesSidesOutOfRange)
{
    // Height and width are 5 bytes after the marker, high byte first.
    const std::string file = JpegFile({8, 8, {64}});
    EXPECT_TRUE(IsRefused(WithBytesAt(file, kFrame, 5, Bytes({0, 0, 0, 8}))));
    EXPECT_TRUE(IsRefused(WithBytesAt(file, kFrame, 5, Bytes({0, 8, 0, 0}))));
    EXPECT_TRUE(IsRefused(WithBytesAt(file, kFrame, 5, Bytes({0x9C, 0x40, 0, 8}))));
    EXPECT_TRUE(IsRefused(WithBytesAt(file, kFrame, 5, Bytes({0, 8, 0x9C, 0x40}))));
    EXPECT_TRUE(IsRefused(WithBytesAt(file, kFrame, 5, Bytes({0x40, 0, 0x40, 0}))))
        << "four million blocks cannot come out of 150 bytes";
}

TEST(JpegDecoder, RefusesMoreBlocksThanTheFileHolds)
{
    HRESULT result = S_OK;
    DecodedPixels(WithBytesAt(JpegFile({8, 8, {64}}), kFrame, 5, Bytes({0, 64, 0, 64})), &result);
    EXPECT_EQ(result, D3DXERR_INVALIDDATA);
}

TEST(JpegDecoder, RefusesAFileThatRepeatsItsScans)
{
    // A progressive file may repeat its scans; this one does so 1000 times.
    const std::string file = JpegFile({8, 8, {64}, true});
    const size_t scan = file.find("\xFF\xDA");
    const std::string once = file.substr(scan, file.size() - 2 - scan);
    std::string bomb = file.substr(0, scan);
    for (int i = 0; i < 1000; ++i)
        bomb += once;
    bomb += "\xFF\xD9";
    HRESULT result = S_OK;
    DecodedPixels(bomb, &result);
    EXPECT_EQ(result, D3DXERR_INVALIDDATA);
}
