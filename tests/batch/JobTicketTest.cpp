// The page that supervisor and worker share.

#include <gtest/gtest.h>

#include "batch/Descriptor.h"
#include "batch/JobTicket.h"

TEST(JobTicketTest, OneOfBothHasTheJob)
{
    const Descriptor file(JobTicket::MakeFile());
    JobTicket supervisor;
    JobTicket worker;
    ASSERT_TRUE(supervisor.Open(file.Get()));
    ASSERT_TRUE(worker.Open(file.Get()));
    supervisor.Put(1);
    EXPECT_TRUE(worker.Take(1));
    EXPECT_FALSE(supervisor.Take(1));
    supervisor.Put(2);
    EXPECT_TRUE(supervisor.Take(2));
    EXPECT_FALSE(worker.Take(2));
}

// The supervisor learns that a job is done, and gives the one after the next, before the worker begins the next.
TEST(JobTicketTest, NextJobMayBePutBeforeTheLastOneIsBegun)
{
    const Descriptor file(JobTicket::MakeFile());
    JobTicket supervisor;
    JobTicket worker;
    ASSERT_TRUE(supervisor.Open(file.Get()));
    ASSERT_TRUE(worker.Open(file.Get()));
    supervisor.Put(7);
    supervisor.Put(8);
    EXPECT_TRUE(worker.Take(7));
    EXPECT_TRUE(worker.Take(8));
}

// The message of a job that was taken back still comes, and must not be taken for a later one.
TEST(JobTicketTest, JobThatWasTakenBackStaysSo)
{
    const Descriptor file(JobTicket::MakeFile());
    JobTicket ticket;
    ASSERT_TRUE(ticket.Open(file.Get()));
    ticket.Put(1);
    EXPECT_TRUE(ticket.Take(1));
    ticket.Put(3);
    EXPECT_FALSE(ticket.Take(1));
    EXPECT_TRUE(ticket.Take(3));
}

TEST(JobTicketTest, WithoutAFileThereIsNoPage)
{
    JobTicket ticket;
    EXPECT_FALSE(ticket.Open(-1));
    EXPECT_FALSE(ticket.IsOpen());
}
