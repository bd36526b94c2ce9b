#include "scene/PartitionOrder.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

/// Entries 0, 1, 2, ...; `kinds` has T for transparent ones and O for opaque ones.
static std::vector<int32_t> Partitioned(const std::string& kinds, int32_t& countOut)
{
    std::vector<int32_t> order;
    for (size_t i = 0; i < kinds.size(); ++i)
        order.push_back(static_cast<int32_t>(i));
    countOut = PartitionOrder(order.data(), static_cast<int32_t>(order.size()), [&](int32_t entry) {
        return kinds[static_cast<size_t>(entry)] == 'T';
    });
    return order;
}

TEST(PartitionOrder, PutsOpaqueEntriesFirst)
{
    static const struct {
        const char* what;
        const char* kinds;
        int32_t opaque;
        std::vector<int32_t> order;
    } cases[] = {
        {"nothing", "", 0, {}},
        {"only transparent: order unchanged", "TTT", 0, {0, 1, 2}},
        {"only opaque", "OOO", 3, {0, 1, 2}},
        {"parted already", "OTT", 1, {0, 1, 2}},
        // 0 swaps places with 2, then 1 with 3, so the transparent ones are in the order 0, 1.
        {"the wrong way round", "TTOO", 2, {2, 3, 0, 1}},
        // 0 with 1: 1 0 2 3 4; 0 with 3: 1 3 2 0 4; 2 with 4: 1 3 4 0 2.
        {"mixed: groups lose their order", "TOTOO", 3, {1, 3, 4, 0, 2}},
    };
    for (const auto& c : cases) {
        int32_t count = -1;
        EXPECT_EQ(Partitioned(c.kinds, count), c.order) << c.what;
        EXPECT_EQ(count, c.opaque) << c.what;
    }
}

TEST(PartitionOrder, AsksNoMoreThanTwiceForEachEntry)
{
    constexpr int32_t kCount = 20000;
    std::vector<int32_t> order(kCount);
    for (int32_t i = 0; i < kCount; ++i)
        order[static_cast<size_t>(i)] = i;
    int32_t asked = 0;
    const int32_t opaque = PartitionOrder(order.data(), kCount, [&](int32_t entry) {
        ++asked;
        return entry < kCount / 2;
    });
    EXPECT_EQ(opaque, kCount / 2);
    EXPECT_LE(asked, 2 * kCount);
}
