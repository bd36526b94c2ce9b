// Anything that may arrive in the supervisor's pipe, in two pieces: whole messages, or a connection that is
// broken. What can be read as a result, a job or a setup stays the same when it is sent on. The first byte
// says whether the rest is one message or any stream of bytes.

#include <cstdint>
#include <cstdlib>
#include <string>

#include <sys/socket.h>

#include "batch/SceneJob.h"
#include "batch/Wire.h"
#include "fuzz/support/Mutation.h"
#include "fuzz/support/ResultMutator.h"

namespace {

void Require(bool holds)
{
    if (!holds)
        std::abort();
}

template <class Thing, class Decode, class Encode>
void CheckRound(const std::string& message, const Decode& decode, const Encode& encode)
{
    Thing thing, again;
    if (!decode(message, thing))
        return;
    const std::string sent = encode(thing);
    Require(decode(sent, again) && encode(again) == sent);
}

void Decode(const std::string& message)
{
    CheckRound<SceneResult>(message, DecodeResult, EncodeResult);
    CheckRound<SceneJob>(message, DecodeJob, EncodeJob);
    CheckRound<WorkerSetup>(message, DecodeSetup, EncodeSetup);
    SceneResult result;
    if (DecodeResult(message, result)) {
        result.FirstReason();
        Require(IsTargetKnown(result) || !result.isTargetWritten);
    }
}

struct Pipe {
    Pipe() { Require(socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0); }
    int ends[2];
};

void Send(const Pipe& pipe, WireAssembler& assembler, std::string_view bytes)
{
    if (bytes.empty())
        return;
    Require(send(pipe.ends[0], bytes.data(), bytes.size(), 0) ==
            static_cast<ssize_t>(bytes.size()));
    Require(assembler.ReadFrom(pipe.ends[1]) == WireAssembler::Arrival::kSome);
}

std::string WithLength(std::string_view message)
{
    const auto size = static_cast<uint32_t>(message.size());
    return std::string(reinterpret_cast<const char*>(&size), sizeof size).append(message);
}

} // namespace

/// A result that is sound but for one thing, or any bytes.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    Dice dice(seed);
    SceneResult result;
    const bool isResult =
        size > 0 && data[0] == 0 && DecodeResult(TextOf(data + 1, size - 1), result);
    if (!isResult && !dice.OneIn(16))
        return LLVMFuzzerMutate(data, size, maxSize);
    if (isResult && dice.OneIn(2))
        return LLVMFuzzerMutate(data, size, maxSize);
    ChangeResult(result, dice);
    return ReplaceInput(std::string(1, '\0') + EncodeResult(result), data, maxSize);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Pipe pipe;
    if (size < 1)
        return 0;
    const std::string_view rest = TextOf(data + 1, size - 1);
    const std::string stream = data[0] == 0 ? WithLength(rest) : std::string(rest);
    WireAssembler assembler;
    std::string message;
    size_t taken = 0;
    const size_t cut = stream.size() / (1 + data[0] % 4u);
    for (const std::string_view part :
         {std::string_view(stream).substr(0, cut), std::string_view(stream).substr(cut)}) {
        Send(pipe, assembler, part);
        while (assembler.Next(message)) {
            taken += message.size() + sizeof(uint32_t);
            Decode(message);
        }
    }
    Require(taken <= stream.size());
    return 0;
}
