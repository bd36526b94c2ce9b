#include "platform/headless/d3d9/VertexFormat.h"

#include <gtest/gtest.h>

using namespace headless;

TEST(VertexFormat, AddsUpTheParts)
{
    static const struct {
        const char* what;
        DWORD fvf;
        UINT bytes;
    } cases[] = {
        {"none", 0, 0},
        {"position", 0x002, 12},
        {"transformed position, two colours, one set", 0x1C4, 16 + 4 + 4 + 8},
        {"position, two colours, one set", 0x1C2, 12 + 4 + 4 + 8},
        {"position and one set", 0x102, 12 + 8},
        {"position and colour", 0x042, 12 + 4},
        {"position, normal, one set", 0x112, 12 + 12 + 8},
        {"position and point size", 0x022, 12 + 4},
        {"two weights, indices, normal", 0x101A, 12 + 2 * 4 + 4 + 12},
        {"five weights", 0x00E, 12 + 20},
        {"sets of 1, 3 and 4 floats", 0x302 | 3u << 16 | 1u << 18 | 2u << 20, 12 + 4 + 12 + 16},
    };
    for (const auto& c : cases)
        EXPECT_EQ(VertexSize(c.fvf), c.bytes) << c.what;
}
