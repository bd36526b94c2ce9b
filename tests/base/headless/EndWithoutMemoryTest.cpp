#include "base/EndWithoutMemory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <new>

#include <unistd.h>

TEST(EndWithoutMemory, NamesTheFilesOfTheCommandLine)
{
    const char* const values[] = {"prog", "-o", "a\nb.glb", "--quiet", "boat.qsa"};
    testing::internal::CaptureStderr();
    EXPECT_EQ(EndWithoutMemory("prog", 5, values, 2), 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "prog: a?b.glb: boat.qsa: not enough memory\n");
}

TEST(EndWithoutMemoryDeathTest, EarlierOutputAppearsBeforeTheMessage)
{
    static const char* const values[] = {"prog", "boat.qsa"};
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            std::printf("earlier\n");
            _exit(EndWithoutMemory("prog", 2, values, 3));
        },
        testing::ExitedWithCode(3), "earlier\nprog: boat.qsa: not enough memory");
}

TEST(EndWithoutMemoryDeathTest, AlsoWhereAFunctionPromisedNotToThrow)
{
    static const char* const values[] = {"prog", "boat.qsa"};
    const auto promise = [](void (*work)()) noexcept { work(); };
    EXPECT_EXIT(
        {
            PrepareEndWithoutMemory("prog", 2, values, 3);
            promise([] { throw std::bad_alloc(); });
        },
        testing::ExitedWithCode(3), "prog: boat.qsa: not enough memory");
}
