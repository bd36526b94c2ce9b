#include "platform/LittleEndian.h"

#include <array>

#include <gtest/gtest.h>

namespace {

// Both orders run on every machine: what a machine of the other order has in memory are the same bytes reversed.
constexpr auto kNative = std::endian::native;
constexpr auto kOther = kNative == std::endian::little ? std::endian::big : std::endian::little;

using Bytes4 = std::array<uint8_t, 4>;
using Bytes8 = std::array<uint8_t, 8>;

constexpr Bytes8 kFile = {0x01, 0x02, 0x03, 0x84, 0x05, 0x06, 0x07, 0x88};

/// The bytes of the file as a machine of either order has them in memory.
Bytes4 InMemory(std::endian order, Bytes4 bytes)
{
    if (order == std::endian::big)
        std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

template <std::endian order>
void ExpectPixels()
{
    Bytes4 stored = {0xEE, 0xEE, 0xEE, 0xEE};
    StorePixelBytes<order>(stored.data(), 0x44332211, 4);
    EXPECT_EQ(stored, InMemory(order, {0x11, 0x22, 0x33, 0x44}));
    EXPECT_EQ(LoadPixelBytes<order>(stored.data(), 4), 0x44332211u);

    StorePixelBytes<order>(stored.data(), 0x44332211, 3); // no number: the same everywhere
    EXPECT_EQ((Bytes4{stored[0], stored[1], stored[2], 0}), (Bytes4{0x11, 0x22, 0x33, 0}));
    EXPECT_EQ(LoadPixelBytes<order>(stored.data(), 3), 0x332211u);

    stored = {0xEE, 0xEE, 0xEE, 0xEE};
    StorePixelBytes<order>(stored.data(), 0x44332211, 2);
    const bool isBig = order == std::endian::big;
    EXPECT_EQ(stored, (Bytes4{isBig ? uint8_t{0x22} : uint8_t{0x11},
                              isBig ? uint8_t{0x11} : uint8_t{0x22}, 0xEE, 0xEE}));
    EXPECT_EQ(LoadPixelBytes<order>(stored.data(), 2), 0x2211u);

    StorePixelBytes<order>(stored.data(), 0x44332255, 1);
    EXPECT_EQ(stored[0], 0x55);
    EXPECT_EQ(LoadPixelBytes<order>(stored.data(), 1), 0x55u);
}

} // namespace

TEST(LittleEndian, LowestByteOfAFileComesFirst)
{
    EXPECT_EQ(LoadLittle<uint8_t>(kFile.data() + 3), 0x84);
    EXPECT_EQ(LoadLittle<uint16_t>(kFile.data()), 0x0201);
    EXPECT_EQ(LoadLittle<int16_t>(kFile.data() + 2), -0x7BFD); // 0x8403 - 0x10000
    EXPECT_EQ(LoadLittle<uint32_t>(kFile.data() + 1), 0x05840302u);
    EXPECT_EQ(LoadLittle<uint64_t>(kFile.data()), 0x8807060584030201u);
    constexpr uint8_t kOne[] = {0x00, 0x00, 0x80, 0x3F};
    EXPECT_EQ(LoadLittle<float>(kOne), 1.0f);

    Bytes8 stored{};
    StoreLittle(stored.data(), uint64_t{0x8807060584030201});
    EXPECT_EQ(stored, kFile);
    StoreLittle(stored.data() + 1, 1.0f);
    EXPECT_EQ(stored, (Bytes8{0x01, 0x00, 0x00, 0x80, 0x3F, 0x06, 0x07, 0x88}));
    StoreLittle(stored.data(), uint16_t{0x1234});
    EXPECT_EQ(stored, (Bytes8{0x34, 0x12, 0x00, 0x80, 0x3F, 0x06, 0x07, 0x88}));
}

TEST(LittleEndian, TheOtherOrderReadsTheBytesReversed)
{
    Bytes4 stored{};
    EXPECT_EQ((LoadLittle<uint32_t, kOther>(kFile.data())), 0x01020384u);
    StoreLittle<kOther>(stored.data(), uint32_t{0x01020384});
    EXPECT_EQ(stored, (Bytes4{0x01, 0x02, 0x03, 0x84}));
}

TEST(LittleEndian, WordsAreReorderedOnBigEndianMachinesOnly)
{
    Bytes8 words = kFile;
    ReorderWords<std::endian::little>(words.data(), 4, 2);
    EXPECT_EQ(words, kFile);
    ReorderWords<std::endian::big>(words.data(), 4, 2);
    EXPECT_EQ(words, (Bytes8{0x84, 0x03, 0x02, 0x01, 0x88, 0x07, 0x06, 0x05}));
    ReorderWords<std::endian::big>(words.data(), 2, 3); // the last word stays
    EXPECT_EQ(words, (Bytes8{0x03, 0x84, 0x01, 0x02, 0x07, 0x88, 0x06, 0x05}));
    ReorderWords<std::endian::big>(words.data(), 1, 8);
    EXPECT_EQ(words, (Bytes8{0x03, 0x84, 0x01, 0x02, 0x07, 0x88, 0x06, 0x05}));
}

TEST(LittleEndian, ValuesAreGivenInFileOrderAndStayInMemory)
{
    const Bytes8 value = kFile;
    Bytes8 given{};
    const auto take = [&given](const void* bytes) { std::memcpy(given.data(), bytes, 8); };
    UseInFileOrder<8, 4, std::endian::little>(value.data(), take);
    EXPECT_EQ(given, kFile);
    UseInFileOrder<8, 4, std::endian::big>(value.data(), take);
    EXPECT_EQ(given, (Bytes8{0x84, 0x03, 0x02, 0x01, 0x88, 0x07, 0x06, 0x05}));
    EXPECT_EQ(value, kFile);
}

TEST(LittleEndian, PixelsAreNumbersInMemoryButForThreeBytes)
{
    ExpectPixels<std::endian::little>();
    ExpectPixels<std::endian::big>();
}
