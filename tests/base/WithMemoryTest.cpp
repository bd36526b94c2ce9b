#include "base/WithMemory.h"

#include <vector>

#include <gtest/gtest.h>

namespace {

/// "done" or "no memory".
template <class Work>
std::string EndOf(const Work& work)
{
    std::string end = "done";
    WithMemory(work, [&] { end = "no memory"; });
    return end;
}

} // namespace

TEST(WithMemory, CallsFailWhenMemoryRunsOut)
{
    EXPECT_EQ(EndOf([] {}), "done");
    EXPECT_EQ(EndOf([] { throw std::bad_alloc(); }), "no memory");
    EXPECT_EQ(EndOf([] { std::vector<int>().resize(SIZE_MAX / 2); }), "no memory");
}

TEST(WithMemory, PassesOtherExceptionsOn)
{
    EXPECT_THROW(EndOf([] { throw 7; }), int);
}
