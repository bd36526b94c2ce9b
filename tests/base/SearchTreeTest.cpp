#include "base/SearchTree.h"

#include <string>

#include "tests/base/LogFixture.h"

namespace {

class SearchTreeTest : public LogFixture {
protected:
    int32_t Number(const char* name)
    {
        const auto* entry = tree.Find(name);
        return entry ? entry->data : -1;
    }
    bool Insert(const char* name, int number)
    {
        auto* entry = tree.Insert(name);
        if (entry)
            entry->data = number;
        return entry != nullptr;
    }

    SearchTree<int> tree;
};

TEST_F(SearchTreeTest, FirstOfTwoNamesThatDifferInCaseStays)
{
    EXPECT_TRUE(Insert("abc", 1));
    EXPECT_FALSE(Insert("ABC", 2));
    EXPECT_EQ(Number("aBc"), 1);
    EXPECT_STREQ(tree.Find("aBc")->name.c_str(), "abc");
}

TEST_F(SearchTreeTest, CaseSensitiveTreeKeepsBoth)
{
    tree.SetCaseSensitive(true);
    EXPECT_TRUE(Insert("abc", 1));
    EXPECT_TRUE(Insert("ABC", 2));
    EXPECT_TRUE(Insert("aBC", 3));
    EXPECT_EQ(Number("abc"), 1);
    EXPECT_EQ(Number("ABC"), 2);
    EXPECT_EQ(Number("aBC"), 3);
    EXPECT_EQ(Number("Abc"), -1);
}

TEST_F(SearchTreeTest, NamesOfOneCharacterAreStoredInTheirBucket)
{
    EXPECT_TRUE(Insert("a", 1));
    EXPECT_TRUE(Insert("ab", 2));
    EXPECT_FALSE(Insert("A", 3));
    EXPECT_EQ(Number("A"), 1);
    EXPECT_EQ(Number("AB"), 2);
    EXPECT_EQ(Number("b"), -1);
}

TEST_F(SearchTreeTest, EmptyNameIsAnErrorOfBothOperations)
{
    EXPECT_EQ(RaisedBy([&] { tree.Insert(""); }), "Empty name string");
    EXPECT_EQ(RaisedBy([&] { tree.Find(""); }), "Empty name string");
    EXPECT_EQ(RaisedBy([&] { tree.Find(String()); }), "Empty name string");
    EXPECT_EQ(RaisedBy([&] { tree.Insert(static_cast<const char*>(nullptr)); }),
              "Empty name string");
    EXPECT_EQ(LogText().substr(0, 37), "Error:SearchTree: Empty name string(T");
}

TEST_F(SearchTreeTest, CharacterOutsideTheRangeIsAnErrorWithItsCode)
{
    static const struct {
        const char* what;
        const char* name;
        const char* expected;
    } cases[] = {
        {"tab", "\tx", "Character in name string out of range: 9"},
        {"umlaut", "\xE4rger", "Character in name string out of range: -28"}, // 0xE4 - 256
        {"just below the range", "\x1F", "Character in name string out of range: 31"},
        {"lowest of the range", " x", "no error"},
        {"highest of the range", "\x7F", "no error"},
        {"behind the levels", "x\t", "no error"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(RaisedBy([&] { tree.Find(c.name); }), c.expected) << c.what << ", empty tree";
        EXPECT_EQ(RaisedBy([&] { tree.Insert(c.name); }), c.expected) << c.what;
        EXPECT_EQ(RaisedBy([&] { tree.Find(c.name); }), c.expected) << c.what;
    }
}

TEST_F(SearchTreeTest, DeeperTreesStoreShortNamesOnTheWay)
{
    tree.SetMaxLevel(4);
    const char* names[] = {"a", "ab", "abc", "abcd", "abce", "b", "abX"};
    for (int i = 0; i < 7; ++i)
        EXPECT_TRUE(Insert(names[i], i));
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(Number(names[i]), i);
        EXPECT_FALSE(Insert(names[i], 100));
    }
    EXPECT_EQ(Number("ABCD"), 3);
    EXPECT_EQ(Number("abcf"), -1);
    EXPECT_EQ(Number("abcde"), -1);
    EXPECT_EQ(RaisedBy([&] { tree.Find("ab\tx"); }), "Character in name string out of range: 9");
}

TEST_F(SearchTreeTest, OneLevelStoresAllInTheRoot)
{
    tree.SetMaxLevel(0); // treated as 1
    EXPECT_TRUE(Insert("\tany", 1));
    EXPECT_FALSE(Insert("\tANY", 2));
    EXPECT_EQ(Number("\tAny"), 1);
}

TEST_F(SearchTreeTest, NarrowRangesHoldNothingOutside)
{
    tree.SetCharRange('A', 26);
    EXPECT_EQ(RaisedBy([&] { tree.Insert("a"); }), "Character in name string out of range: 97");
    EXPECT_TRUE(Insert("B", 1));
    EXPECT_EQ(Number("B"), 1);
}

TEST_F(SearchTreeTest, QuirkFindLooksUnderTheLowerCaseLetterSecond)
{
    // In a range of small letters the folded letter has no bucket: inserting is an error, and the
    // search goes on to the bucket of the small letter, which must be empty.
    tree.SetCharRange('a', 26);
    EXPECT_EQ(RaisedBy([&] { tree.Insert("x"); }), "Character in name string out of range: 120");
    EXPECT_EQ(tree.Find("x"), nullptr);
    EXPECT_EQ(RaisedBy([&] { tree.Find("X"); }), "Character in name string out of range: 88");
}

TEST_F(SearchTreeTest, ClearForgetsAllNames)
{
    Insert("abc", 1);
    tree.Clear();
    EXPECT_EQ(Number("abc"), -1);
    EXPECT_TRUE(Insert("abc", 2));
    EXPECT_EQ(Number("abc"), 2);
}

TEST_F(SearchTreeTest, FirstWinsAmongThousandsInOneBucket)
{
    const auto name = [](int i) { return "Box" + std::to_string(i); };
    for (int i = 0; i < 3000; ++i)
        ASSERT_TRUE(Insert(name(i).c_str(), i));
    for (int i = 0; i < 3000; ++i) {
        const std::string other = "bOX" + std::to_string(i);
        ASSERT_FALSE(Insert(other.c_str(), -2));
        ASSERT_EQ(Number(other.c_str()), i);
    }
    EXPECT_EQ(Number("Box3000"), -1);
}

TEST_F(SearchTreeTest, DestructionCountsAllNodesDown)
{
    const int32_t before = gErrorClassCount;
    {
        SearchTree<int> local;
        local.Insert("abc");
        // The root, 96 children, and the list of entries of one of them.
        EXPECT_EQ(gErrorClassCount, before + 98);
    }
    EXPECT_EQ(gErrorClassCount, before);
}

} // namespace
