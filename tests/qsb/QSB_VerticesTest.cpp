#include "qsb/QSB_Vertices.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "qsb/QSB_Format.h"

TEST(QSB_VertexForm, SizesFollowFromFormatAndVersion)
{
    const struct {
        const char* what;
        DWORD fvf;
        int32_t version;
        int32_t size;
        int32_t boneOffset;
    } cases[] = {
        {"plain", 0x12, 106, 12 + 6, -1},
        {"plain in an old file", 0x12, 101, 12 + 8 + 6, -1},
        {"plain in the oldest file: position and normal in memory", 0x12, 100, 24, -1},
        {"two betas", 0x1018, 106, 12 + 6 + 4 + 4, 22},
        {"two betas, one set", 0x1118, 106, 12 + 8 + 6 + 4 + 4, 30},
        {"two betas in memory: position, weight, bones, normal", 0x1018, 100, 32, 16},
        {"four betas", 0x101C, 102, 12 + 6 + 8 + 4, 26},
    };
    for (const auto& c : cases) {
        VertexInfo info;
        info.SetFVFInfo(c.fvf);
        const QSB_VertexForm form(info, c.version);
        EXPECT_EQ(form.size, c.size) << c.what;
        EXPECT_EQ(form.boneOffset, c.boneOffset) << c.what;
        EXPECT_EQ(form.isRaw, c.version == 100) << c.what;
    }
}

TEST(PackVertices, CutsTowardsZero)
{
    // As a float, 0.1 is slightly above one tenth: 3276.7 of 32767.
    const struct {
        float value;
        int16_t stored;
    } cases[] = {{0, 0},           {1, 32767},    {-1, -32767},      {0.1f, 3276},
                 {-0.1f, -3276},   {0.5f, 16383}, {1.0f / 32768, 0}, {-1.0f / 32768, 0},
                 {1.00003f, 32767}};
    for (const auto& c : cases) {
        VertexInfo info;
        info.SetFVFInfo(0x12);
        const float vertex[6] = {1, 2, 3, c.value, 0, 0};
        uint8_t record[18];
        const int32_t clamped =
            PackVertices(reinterpret_cast<const uint8_t*>(vertex), info, 1, record);
        int16_t stored = 0;
        std::memcpy(&stored, record + 12, 2);
        EXPECT_EQ(stored, c.stored) << c.value;
        EXPECT_EQ(clamped, 0) << c.value; // 1.00003 * 32767 is 32767.98
    }
}

TEST(UnpackVertices, PartsMissingFromTheFileAreZero)
{
    VertexInfo stored;
    stored.SetFVFInfo(0x12);
    VertexInfo info;
    info.SetFVFInfo(0x402D2); // plus colours and two sets of coordinates
    ASSERT_EQ(info.stride, 24 + 8 + 8 + 12);
    uint8_t record[18] = {};
    record[17] = 0x40; // half of a normal along z: 16384 / 32767
    std::vector<uint8_t> vertex(static_cast<size_t>(info.stride), 0xEE);
    UnpackVertices(record, QSB_VertexForm(stored, kQsbCurrent), stored, 1, info, vertex.data());
    float z = 0;
    std::memcpy(&z, vertex.data() + 20, 4);
    EXPECT_EQ(z, static_cast<float>(16384 / 32767.0));
    std::memset(vertex.data() + 20, 0, 4);
    EXPECT_EQ(vertex, std::vector<uint8_t>(vertex.size(), 0));
}
