// The page that supervisor and worker share.

#include <gtest/gtest.h>

#include "batch/Descriptor.h"
#include "batch/JobTicket.h"

namespace {

/// Both ends of one page.
class JobTicketTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(supervisor.Open(file.Get()));
        ASSERT_TRUE(worker.Open(file.Get()));
    }

    const Descriptor file{JobTicket::MakeFile()};
    JobTicket supervisor;
    JobTicket worker;
};

} // namespace

TEST_F(JobTicketTest, OneOfBothHasTheJob)
{
    supervisor.Put(1);
    EXPECT_TRUE(worker.Take(1));
    EXPECT_FALSE(supervisor.Take(1));
    supervisor.Put(2);
    EXPECT_TRUE(supervisor.Take(2));
    EXPECT_FALSE(worker.Take(2));
}

// The supervisor learns that a job is done, and gives the one after the next, before the worker begins the next.
TEST_F(JobTicketTest, NextJobMayBePutBeforeTheLastOneIsBegun)
{
    supervisor.Put(7);
    supervisor.Put(8);
    EXPECT_TRUE(worker.Take(7));
    EXPECT_TRUE(worker.Take(8));
}

TEST_F(JobTicketTest, SoManyJobsMayBeIn)
{
    constexpr uint32_t kFirst = 5;
    for (uint32_t i = 0; i < JobTicket::kMost; ++i)
        supervisor.Put(kFirst + i);
    for (uint32_t i = 0; i < JobTicket::kMost; ++i)
        EXPECT_TRUE(worker.Take(kFirst + i)) << i;
}

// The message of a job that was taken back still comes, and must not be taken for a later one.
TEST_F(JobTicketTest, JobThatWasTakenBackStaysSo)
{
    supervisor.Put(1);
    EXPECT_TRUE(supervisor.Take(1));
    supervisor.Put(3);
    EXPECT_FALSE(worker.Take(1));
    EXPECT_TRUE(worker.Take(3));
}

TEST(JobTicket, WithoutAFileThereIsNoPage)
{
    JobTicket ticket;
    EXPECT_FALSE(ticket.Open(-1));
    EXPECT_FALSE(ticket.IsOpen());
}
