#include "base/DynaMem.h"

#include <vector>

#include "tests/base/LogFixture.h"

namespace {

using IntList = DynaMem<int, 8, 1>;

class DynaMemTest : public LogFixture {
protected:
    /// Adds the values 0, 10, 20, ...
    static void Fill(IntList& list, int number)
    {
        for (int i = 0; i < number; ++i) {
            const int value = i * 10;
            list.Add(&value);
        }
    }
    static std::vector<int> Values(const IntList& list)
    {
        std::vector<int> values;
        for (const int* value : list)
            values.push_back(*value);
        return values;
    }
};

TEST_F(DynaMemTest, StartsEmptyWithItsFirstCapacityAndNoArrays)
{
    const IntList list;
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Capacity(), 8);
    EXPECT_FALSE(list.data);
    EXPECT_FALSE(list.order);
    EXPECT_EQ(list.firstFree, 0);
    EXPECT_EQ(list.fixed, 0);
    EXPECT_EQ(list.reserved, -1);
    EXPECT_EQ(list.orderDirty, 1);
    EXPECT_EQ(list.flag, 1);
    EXPECT_EQ(Values(list), std::vector<int>());
}

TEST_F(DynaMemTest, NinthAddGrowsToEighteenAndNineteenthToThirty)
{
    IntList list;
    Fill(list, 8);
    EXPECT_EQ(list.Capacity(), 8);
    list.Add();
    EXPECT_EQ(list.Capacity(), 18); // 8 + 8 / 4 + 8
    Fill(list, 9);
    EXPECT_EQ(list.Capacity(), 18);
    list.Add();
    EXPECT_EQ(list.Capacity(), 30); // 18 + 18 / 4 + 8
    EXPECT_EQ(list.Count(), 19);
}

TEST_F(DynaMemTest, AddGivesTheSlotAndADefaultElement)
{
    IntList list;
    EXPECT_EQ(list.Add(), 0);
    EXPECT_EQ(list.Add(), 1);
    EXPECT_EQ(*list.Get(1), 0);
}

TEST_F(DynaMemTest, AddOfNullIsAnError)
{
    IntList list;
    EXPECT_EQ(RaisedBy([&] { list.Add(nullptr); }), "Null pointer added !");
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(LogText(), Entry("Error:ErrorClassSimple: Null pointer added !"));
}

TEST_F(DynaMemTest, DeletedSlotIsFilledByTheNextAdd)
{
    IntList list;
    Fill(list, 5);
    EXPECT_TRUE(list.DeleteSlot(2));
    const int added = 99;
    EXPECT_EQ(list.Add(&added), 2);
    EXPECT_EQ(*list.Get(2), 99);
    EXPECT_EQ(*list.Get(4), 40);
    EXPECT_EQ(Values(list), (std::vector<int>{0, 10, 99, 30, 40}));
}

TEST_F(DynaMemTest, LowestFreeSlotIsFilledFirst)
{
    IntList list;
    Fill(list, 6);
    list.DeleteSlot(4);
    list.DeleteSlot(1);
    EXPECT_EQ(list.Add(), 1);
    EXPECT_EQ(list.Add(), 4);
    EXPECT_EQ(list.Add(), 6);
}

TEST_F(DynaMemTest, SlotsStayWhenOthersAreDeleted)
{
    IntList list;
    Fill(list, 4);
    const int* third = list.GetSlot(3);
    list.Delete(0);
    EXPECT_EQ(list.GetSlot(3), third);
    EXPECT_EQ(list.Get(2), third);
    EXPECT_EQ(list.GetSlot(0), nullptr);
    EXPECT_EQ(list.GetSlot(-1), nullptr);
    EXPECT_EQ(list.GetSlot(8), nullptr);
}

TEST_F(DynaMemTest, SetSizeMinusOneCompactsAndRenumbers)
{
    IntList list;
    Fill(list, 6);
    list.DeleteSlot(0);
    list.DeleteSlot(3);
    list.SetSize(-1);
    EXPECT_EQ(list.Capacity(), 4);
    EXPECT_EQ(*list.GetSlot(0), 10);
    EXPECT_EQ(*list.GetSlot(2), 40);
    EXPECT_EQ(list.firstFree, 4);
    EXPECT_EQ(list.orderDirty, 0);
    EXPECT_EQ(Values(list), (std::vector<int>{10, 20, 40, 50}));
}

TEST_F(DynaMemTest, SetSizeBelowTheCountIsAnError)
{
    IntList list;
    Fill(list, 5);
    EXPECT_EQ(RaisedBy([&] { list.SetSize(4); }), "New size too small");
    EXPECT_EQ(RaisedBy([&] { list.SetSize(-2); }), "New size too small");
    list.SetSize(5);
    EXPECT_EQ(list.Capacity(), 5);
}

TEST_F(DynaMemTest, ListTrimmedToNothingGrowsAgain)
{
    IntList list;
    list.SetSize(-1);
    EXPECT_EQ(list.Capacity(), 0);
    EXPECT_EQ(list.Add(), 0);
    EXPECT_EQ(list.Capacity(), 8); // 0 + 0 / 4 + 8
}

TEST_F(DynaMemTest, DeletingAMissingElementIsAnErrorWithItsNumber)
{
    IntList list;
    Fill(list, 3);
    list.DeleteSlot(1);
    static const struct {
        const char* what;
        bool bySlot;
        int32_t number;
        const char* expected;
    } cases[] = {
        {"empty slot", true, 1, "Can not delete object nr: 1"},
        {"never used slot", true, 7, "Can not delete object nr: 7"},
        {"slot behind the table", true, 8, "Can not delete object nr: 8"},
        {"negative slot", true, -1, "Can not delete object nr: -1"},
        {"index behind the count", false, 2, "Can not delete object nr: 2"},
        {"negative index", false, -5, "Can not delete object nr: -5"},
    };
    for (const auto& c : cases) {
        const auto deleteIt = [&] { c.bySlot ? list.DeleteSlot(c.number) : list.Delete(c.number); };
        EXPECT_EQ(RaisedBy(deleteIt), c.expected) << c.what;
    }
    EXPECT_EQ(list.Count(), 2);
}

TEST_F(DynaMemTest, FixedListMayNotGrow)
{
    IntList list;
    Fill(list, 8);
    list.SetFixed(true);
    EXPECT_EQ(RaisedBy([&] { list.Add(); }), "Can not expand fixed list");
    EXPECT_EQ(RaisedBy([&] { list.SetSize(20); }), "Can not SetSize() of fixed list");
    EXPECT_EQ(list.Count(), 8);
    list.SetFixed(false);
    EXPECT_EQ(list.Add(), 8);
}

TEST_F(DynaMemTest, FullFixedListCreatesNoElementBeforeTheError)
{
    static int made;
    struct Counted {
        Counted() { ++made; }
    };
    made = 0;
    DynaMem<Counted, 1> list;
    list.Add();
    list.SetFixed(true);
    EXPECT_EQ(RaisedBy([&] { list.Add(); }), "Can not expand fixed list");
    EXPECT_EQ(made, 1);
}

TEST_F(DynaMemTest, QuirkFixedListKeepsTheOrderItHad)
{
    IntList list;
    Fill(list, 3);
    EXPECT_EQ(*list.Get(1), 10); // builds the order
    list.SetFixed(true);
    list.DeleteSlot(1);
    EXPECT_EQ(list.Get(1), nullptr);
    EXPECT_EQ(*list.Get(0), 0);
    list.SetFixed(false);
    EXPECT_EQ(*list.Get(1), 20);
}

TEST_F(DynaMemTest, SearchThatFindsNoFreeSlotIsAnErrorWithTheCapacity)
{
    IntList list;
    Fill(list, 3);
    list.firstFree = 8; // no operation leaves it in this state
    EXPECT_EQ(RaisedBy([&] { list.Add(); }), "Maximum number of data elements reached: 8");
}

TEST_F(DynaMemTest, ClearDestroysInSlotOrderAndKeepsTheArrays)
{
    static std::vector<int> destroyed;
    struct Noted {
        int number = 0;
        ~Noted() { destroyed.push_back(number); }
    };
    destroyed.clear();
    {
        DynaMem<Noted, 4> list;
        for (int i = 0; i < 3; ++i)
            list.GetSlot(list.Add())->number = i;
        list.Clear();
        EXPECT_EQ(destroyed, (std::vector<int>{0, 1, 2}));
        EXPECT_EQ(list.Count(), 0);
        EXPECT_EQ(list.firstFree, 0);
        EXPECT_TRUE(list.data);
        list.GetSlot(list.Add())->number = 7;
    }
    EXPECT_EQ(destroyed, (std::vector<int>{0, 1, 2, 7}));
}

TEST_F(DynaMemTest, ElementsNeedNotBeCopyable)
{
    DynaMem<std::unique_ptr<int>, 4> list;
    *list.GetSlot(list.Add()) = std::make_unique<int>(5);
    EXPECT_EQ(**list.Get(0), 5);
}

TEST_F(DynaMemTest, CopyOfAnElementOfTheSameListSurvivesGrowth)
{
    IntList list;
    Fill(list, 8);
    const int32_t slot = list.Add(list.Get(3));
    EXPECT_EQ(*list.GetSlot(slot), 30);
}

/// An element whose allocation can be made to fail.
struct Scarce {
    static inline bool exhausted = false;
    int number = 1;
    static void* operator new(size_t size, const std::nothrow_t& tag) noexcept
    {
        return exhausted ? nullptr : ::operator new(size, tag);
    }
    static void operator delete(void* memory) { ::operator delete(memory); }
    static void operator delete(void* memory, const std::nothrow_t&) noexcept
    {
        ::operator delete(memory);
    }
};

TEST_F(DynaMemTest, AddedWithoutMemoryThrowsAndLeavesTheListAsItWas)
{
    DynaMem<Scarce, 4> list;
    list.Added(list.Add()).number = 7;
    Scarce::exhausted = true;
    EXPECT_THROW(list.Added(list.Add()), std::bad_alloc);
    Scarce::exhausted = false;
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(list.Get(0)->number, 7);
    EXPECT_EQ(list.Add(), 1) << "the slot is free again";
    EXPECT_EQ(list.Count(), 2);
}

TEST_F(DynaMemTest, WithoutMemoryTheSlotStaysEmptyAndIsCounted)
{
    DynaMem<Scarce, 4> list;
    list.Add();
    Scarce::exhausted = true;
    EXPECT_EQ(list.Add(), 1);
    Scarce::exhausted = false;
    list.Add();
    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(list.GetSlot(1), nullptr);
    EXPECT_NE(list.Get(0), nullptr);
    EXPECT_NE(list.Get(1), nullptr) << "the live elements come first";
    EXPECT_EQ(list.Get(2), nullptr) << "an empty slot stands for the missing one";
    list.Add(); // slot 3
    // Growing compacts the live elements into slots 0 to 2; slot 3 gets the missing one, and the
    // new element goes after all counted ones.
    EXPECT_EQ(list.Add(), 4);
    EXPECT_EQ(list.Count(), 5);
    EXPECT_EQ(list.GetSlot(3), nullptr);
    EXPECT_EQ(list.Get(3), list.GetSlot(4));
    EXPECT_EQ(list.Get(4), nullptr);
    list.Clear();
    EXPECT_EQ(list.Count(), 0);
}

TEST_F(DynaMemTest, WalkGivesElementsThatCanBeChanged)
{
    IntList list;
    Fill(list, 3);
    for (int* value : list)
        *value += 1;
    EXPECT_EQ(Values(list), (std::vector<int>{1, 11, 21}));
}

} // namespace
