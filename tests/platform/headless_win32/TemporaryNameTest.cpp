#include "platform/headless/win32/TemporaryName.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

using namespace headless;

TEST(TemporaryName, TellsItsOwner)
{
    const TemporaryOwner self = TemporaryOwner::ThisProcess();
    EXPECT_FALSE(self.host.empty());
    EXPECT_EQ(self.boot.size(), 32u) << "128 bits";
    TemporaryOwner read;
    ASSERT_TRUE(read.Read(TemporaryName(7).c_str()));
    EXPECT_EQ(read.host, self.host);
    EXPECT_EQ(read.boot, self.boot);
    EXPECT_EQ(read.process, getpid());
    EXPECT_NE(TemporaryName(7), TemporaryName(8));
}

TEST(TemporaryName, IsKnownByItsStartAndProcess)
{
    const TemporaryOwner self = TemporaryOwner::ThisProcess();
    const std::string start = TemporaryNameStart();
    const std::string mine = TemporaryName(7);
    EXPECT_TRUE(IsTemporaryNameOf(mine.c_str(), start, getpid()));
    EXPECT_FALSE(IsTemporaryNameOf(mine.c_str(), start, getpid() + 1));
    EXPECT_FALSE(IsTemporaryNameOf((mine + "x").c_str(), start, getpid()));
    EXPECT_FALSE(IsTemporaryNameOf(mine.c_str(), ".qsa2qsb-other-" + self.boot + "-", getpid()));
    EXPECT_FALSE(IsTemporaryNameOf((start + ".tmp").c_str(), start, getpid()));
    EXPECT_FALSE(IsTemporaryNameOf((start + "x1-0.tmp").c_str(), start, 1));
}

TEST(TemporaryName, HostMayHaveDashes)
{
    TemporaryOwner owner;
    ASSERT_TRUE(owner.Read(".qsa2qsb-render-node-7-ab12-99-0.tmp"));
    EXPECT_EQ(owner.host, "render-node-7");
    EXPECT_EQ(owner.boot, "ab12");
    EXPECT_EQ(owner.process, 99);
}

TEST(TemporaryName, OtherNamesHaveNoOwner)
{
    for (const char* name :
         {".qsa2qsb-.tmp", ".qsa2qsb-notes", "boat.tmp", ".qsa2qsb-1234-0.tmp",
          ".qsa2qsb-h-b-0-0.tmp", ".qsa2qsb-h-b-9x-0.tmp", ".qsa2qsb-h-b-99999999999-0.tmp"})
        EXPECT_FALSE(TemporaryOwner().Read(name)) << name;
    EXPECT_TRUE(IsTemporaryName(".qsa2qsb-1234-0.tmp")) << "of an older version";
    EXPECT_FALSE(IsTemporaryName(".qsa2qsb-.tmp"));
}

TEST(TemporaryOwner, IsGoneOnlyIfItsProcessOfThisHostHasEnded)
{
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    waitpid(ended, nullptr, 0);
    TemporaryOwner owner = TemporaryOwner::ThisProcess();
    owner.process = ended;
    EXPECT_TRUE(owner.IsGone());
    owner.process = getppid();
    EXPECT_FALSE(owner.IsGone()) << "it runs";
    owner.process = ended;
    owner.host += "2";
    EXPECT_FALSE(owner.IsGone()) << "nobody here can see it";
    owner = TemporaryOwner::ThisProcess();
    owner.process = ended;
    owner.boot[0] = owner.boot[0] == 'a' ? 'b' : 'a';
    EXPECT_FALSE(owner.IsGone()) << "another machine may have this name too";
    owner.boot.clear();
    EXPECT_FALSE(owner.IsGone()) << "it tells nothing";
}

// A killed worker stays in the table of processes until its parent, or the system's first process, asks for it.
TEST(TemporaryOwner, IsGoneIfItsProcessHasEndedUnnoticed)
{
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    siginfo_t info;
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(ended), &info, WEXITED | WNOWAIT), 0);
    TemporaryOwner owner = TemporaryOwner::ThisProcess();
    owner.process = ended;
    EXPECT_TRUE(owner.IsGone());
    waitpid(ended, nullptr, 0);
}
