// Messages between supervisor and workers, whole and damaged.

#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "batch/SceneJob.h"
#include "batch/Wire.h"

namespace {

SceneResult SampleResult()
{
    SceneResult result;
    result.status = SceneStatus::kFailed;
    result.isTargetWritten = true;
    result.messages.push_back({203, MessageLevel::kError, "QSALoader", "a text", 7});
    result.messagesLeftOut = 5;
    result.seconds = 0.5;
    result.peakKiB = 1234;
    result.counts.faces = 9;
    result.hasSource = true;
    result.source.sizeBytes = 42;
    result.source.changedNs = -1;
    result.source.hash[15] = 0xEE;
    result.inputs.push_back({"/p/x.png", true, result.source});
    result.inputs.push_back({"/p/gone.png", false, {}});
    result.thumb = std::string("\xFF\0\xD8", 3);
    return result;
}

/// Two connected sockets.
struct SocketPair {
    SocketPair() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0); }
    ~SocketPair()
    {
        close(ends[0]);
        close(ends[1]);
    }
    int ends[2] = {-1, -1};
};

} // namespace

TEST(WireTest, ResultsComeBackAsTheyWere)
{
    SceneResult read;
    ASSERT_TRUE(DecodeResult(EncodeResult(SampleResult()), read));
    EXPECT_EQ(EncodeResult(read), EncodeResult(SampleResult()));
    EXPECT_EQ(read.status, SceneStatus::kFailed);
    EXPECT_EQ(read.messages.at(0).text, "a text");
    EXPECT_EQ(read.messages.at(0).count, 7u);
    EXPECT_EQ(read.source.changedNs, -1);
    EXPECT_EQ(read.inputs.at(1).path, "/p/gone.png");
    EXPECT_FALSE(read.inputs.at(1).isThere);
    EXPECT_EQ(read.thumb.size(), 3u);
}

TEST(WireTest, SetupsComeBackAsTheyWereOrNotAtAll)
{
    WorkerSetup setup;
    setup.memoryBytes = 7;
    setup.isDurable = true;
    setup.isConfined = true;
    setup.processorSeconds = 61;
    setup.readable = {"/a", "/b"};
    const std::string whole = EncodeSetup(setup);
    WorkerSetup read;
    ASSERT_TRUE(DecodeSetup(whole, read));
    EXPECT_EQ(read.memoryBytes, 7u);
    EXPECT_TRUE(read.isDurable);
    EXPECT_TRUE(read.isConfined);
    EXPECT_EQ(read.processorSeconds, 61u);
    EXPECT_EQ(read.readable, (std::vector<std::string>{"/a", "/b"}));
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(DecodeSetup(std::string_view(whole).substr(0, size), read)) << size;
}

TEST(WireTest, EveryCutAndEveryAdditionIsRefused)
{
    const std::string whole = EncodeResult(SampleResult());
    SceneResult read;
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(DecodeResult(std::string_view(whole).substr(0, size), read)) << size;
    EXPECT_FALSE(DecodeResult(whole + "x", read));
}

// The count of messages is at bytes 3 to 6.
TEST(WireTest, CountsBeyondTheMessageAreRefused)
{
    std::string message = EncodeResult(SampleResult());
    message.replace(3, 4, "\xFF\xFF\xFF\x7F");
    SceneResult read;
    EXPECT_FALSE(DecodeResult(message, read));
    message = EncodeResult(SampleResult());
    message[0] = 99; // no such status
    EXPECT_FALSE(DecodeResult(message, read));
}

TEST(WireTest, MessagesArePutTogetherFromPieces)
{
    const SocketPair pair;
    ASSERT_TRUE(SendWire(pair.ends[0], "first"));
    ASSERT_TRUE(SendWire(pair.ends[0], ""));
    const char half[] = {3, 0, 0, 0, 'a'};
    ASSERT_EQ(send(pair.ends[0], half, sizeof half, 0), 5);
    WireAssembler assembler;
    EXPECT_EQ(assembler.ReadFrom(pair.ends[1]), WireAssembler::Arrival::kSome);
    std::string message;
    EXPECT_TRUE(assembler.Next(message));
    EXPECT_EQ(message, "first");
    EXPECT_TRUE(assembler.Next(message));
    EXPECT_EQ(message, "");
    EXPECT_FALSE(assembler.Next(message));
    EXPECT_EQ(assembler.ReadFrom(pair.ends[1]), WireAssembler::Arrival::kNothing);
    ASSERT_EQ(send(pair.ends[0], "bc", 2, 0), 2);
    assembler.ReadFrom(pair.ends[1]);
    EXPECT_TRUE(assembler.Next(message));
    EXPECT_EQ(message, "abc");
    shutdown(pair.ends[0], SHUT_WR);
    EXPECT_EQ(assembler.ReadFrom(pair.ends[1]), WireAssembler::Arrival::kEnd);
}

TEST(WireTest, ImpossibleLengthsBreakTheConnection)
{
    const SocketPair pair;
    ASSERT_EQ(send(pair.ends[0], "\xFF\xFF\xFF\xFF", 4, 0), 4);
    WireAssembler assembler;
    assembler.ReadFrom(pair.ends[1]);
    std::string message;
    EXPECT_FALSE(assembler.Next(message));
    EXPECT_TRUE(assembler.IsBroken());
    ASSERT_EQ(send(pair.ends[0], "\xFF\xFF\xFF\xFF", 4, 0), 4);
    EXPECT_FALSE(WireAssembler().Await(pair.ends[1], message));
}
