#include "gfx/KRE_ResourceManager.h"

#include "gfx/KRE_ResourceBase.h"
#include "tests/gfx/EngineTest.h"

#include <climits>

namespace {

class ResourceManagerTest : public testing::Test {
protected:
    const ScratchDirectory scratch; // the log is written here
    KRE_ResourceManager manager;
    int objects[3] = {};
};

} // namespace

TEST_F(ResourceManagerTest, NewEntryHasOneUser)
{
    const int32_t id = manager.Add(&objects[0], "wood.bmp");
    ASSERT_EQ(manager.GetCount(), 1);
    EXPECT_EQ(manager.GetPointer(id), &objects[0]);
    EXPECT_STREQ(manager.GetEntry(0)->name, "wood.bmp");
    EXPECT_EQ(manager.GetEntry(0)->useCount, 1);
    EXPECT_TRUE(manager.reuse);
}

TEST_F(ResourceManagerTest, LastUserIsToldToRelease)
{
    const int32_t id = manager.Add(&objects[0], "wood.bmp");
    EXPECT_EQ(manager.Acquire(id), id);
    EXPECT_EQ(manager.Acquire("wood.bmp"), id);
    EXPECT_FALSE(manager.Unacquire(id));
    EXPECT_FALSE(manager.Unacquire(id));
    EXPECT_TRUE(manager.Unacquire(id));
    EXPECT_EQ(manager.GetCount(), 0);
    EXPECT_EQ(manager.GetPointer(id), nullptr);
}

TEST_F(ResourceManagerTest, SameNameTwiceIsTwoEntriesAndTheFirstIsFound)
{
    const int32_t first = manager.Add(&objects[0], "wood.bmp");
    const int32_t second = manager.Add(&objects[1], "wood.bmp");
    EXPECT_NE(first, second);
    EXPECT_EQ(manager.GetCount(), 2);
    EXPECT_EQ(manager.Acquire("wood.bmp"), first);
}

TEST_F(ResourceManagerTest, NamesAreComparedWithTheirCase)
{
    manager.Add(&objects[0], "wood.bmp");
    EXPECT_EQ(manager.Acquire("Wood.bmp"), -1);
    EXPECT_EQ(manager.Acquire("wood"), -1);
}

TEST_F(ResourceManagerTest, UnsharedObjectPassesAndIsTheCallersToRelease)
{
    EXPECT_EQ(manager.Acquire(-1), -1);
    EXPECT_TRUE(manager.Unacquire(-1));
}

TEST_F(ResourceManagerTest, BadIdsAreErrors)
{
    const auto errors = [&](int32_t id) {
        return RaisedBy([&] { manager.Acquire(id); }) + "|" +
               RaisedBy([&] { manager.Unacquire(id); });
    };
    EXPECT_EQ(errors(0), "Invalid ID number in Acquire:0|Invalid ID number in Unacquire")
        << "no table yet";
    const int32_t id = manager.Add(&objects[0], "wood.bmp");
    manager.Add(&objects[1], "stone.bmp");
    manager.Unacquire(id);
    EXPECT_EQ(errors(0), "Invalid ID number in Acquire:0|Invalid ID number in Unacquire")
        << "empty slot";
    EXPECT_EQ(errors(-2), "Invalid ID number in Acquire:-2|Invalid ID number in Unacquire");
    EXPECT_EQ(errors(4096), "Invalid ID number in Acquire:4096|Invalid ID number in Unacquire");
    EXPECT_EQ(errors(INT_MIN),
              "Invalid ID number in Acquire:-2147483648|Invalid ID number in Unacquire");
    EXPECT_EQ(manager.GetPointer(-1), nullptr);
    EXPECT_EQ(manager.GetEntry(-1), nullptr);
    EXPECT_EQ(manager.GetEntry(1), nullptr) << "one entry is left";
}

TEST_F(ResourceManagerTest, EmptyNameIsAnError)
{
    EXPECT_EQ(RaisedBy([&] { manager.Acquire(""); }), "Invalid file name in Acquire!");
    EXPECT_EQ(RaisedBy([&] { manager.Acquire(nullptr); }), "Invalid file name in Acquire!");
}

TEST_F(ResourceManagerTest, NamesAreTruncatedToTheirField)
{
    manager.Add(&objects[0], std::string(300, 'n').c_str());
    EXPECT_EQ(manager.GetEntry(0)->name, std::string(255, 'n'));
    manager.Add(&objects[1], nullptr);
    EXPECT_STREQ(manager.GetEntry(1)->name, "");
}

TEST_F(ResourceManagerTest, ResourceNumber4097DoesNotFit)
{
    for (int i = 0; i < 4096; ++i)
        ASSERT_EQ(manager.Add(&objects[0], std::to_string(i).c_str()), i);
    EXPECT_EQ(RaisedBy([&] { manager.Add(&objects[0], "one too many"); }),
              "Can not expand fixed list");
    EXPECT_EQ(manager.GetCount(), 4096);

    // The table still works: the used entries can be walked and a freed place is reused.
    EXPECT_TRUE(manager.Unacquire(17));
    ASSERT_EQ(manager.GetCount(), 4095);
    EXPECT_STREQ(manager.GetEntry(16)->name, "16");
    EXPECT_STREQ(manager.GetEntry(17)->name, "18");
    EXPECT_STREQ(manager.GetEntry(4094)->name, "4095");
    EXPECT_EQ(manager.Add(&objects[1], "fits"), 17);
    EXPECT_STREQ(manager.GetEntry(17)->name, "fits");
}

TEST(ResourceBase, StartsWithoutIdAndManager)
{
    struct Plain : KRE_ResourceBase {};
    const Plain plain;
    EXPECT_EQ(plain.resourceId, -1);
    EXPECT_EQ(plain.manager, nullptr);
}
