// Any line of a chunk's journal. The first byte says whether the rest is a line as it stands, or a line, a zero
// and the bytes of a record, which get the check that a line needs to be believed. A record that is taken stays
// the same when it is written again.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "batch/Base64.h"
#include "batch/ChunkRecord.h"
#include "batch/ContentHash.h"
#include "batch/Wire.h"
#include "fuzz/support/Mutation.h"
#include "fuzz/support/ResultMutator.h"

namespace {

std::string BytesOf(const ContentHash& hash)
{
    return {reinterpret_cast<const char*>(hash.data()), hash.size()};
}

/// The line with a record that nobody has looked at.
std::string LineWithBytes(const std::string& line, const std::string& record)
{
    const std::string check =
        BytesOf(HashOf(BytesOf(HashOf(line + "}")) + BytesOf(HashOf(record))));
    return line + ",\"record\":\"" + Base64(check + record) + "\"}";
}

std::string LineOf(uint8_t kind, const std::string& text)
{
    const size_t end = text.find('\0');
    if (kind != 0 || end == std::string::npos)
        return text;
    return LineWithBytes(text.substr(0, end), text.substr(end + 1));
}

/// The bytes of a record, as `ChunkRecord` writes them.
std::string RecordWith(const SceneResult& result)
{
    SceneJob job;
    job.path = "a.qsa";
    WireWriter wire;
    wire.U8(1);
    wire.U32(1);
    wire.Text("target");
    wire.Text("frame");
    wire.Text(EncodeJob(job));
    wire.Text(EncodeResult(result));
    return wire.Bytes();
}

} // namespace

/// A sound record now and then, for libFuzzer's own mutator to change.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    Dice dice(seed);
    if (!dice.OneIn(16))
        return LLVMFuzzerMutate(data, size, maxSize);
    SceneResult result;
    for (size_t i = dice.Below(6); i > 0; --i)
        ChangeResult(result, dice);
    return ReplaceInput(std::string(1, '\0') + "{" + std::string(1, '\0') + RecordWith(result),
                        data, maxSize);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const std::string line = LineOf(data[0], std::string(TextOf(data + 1, size - 1)));
    std::string plain, plainAgain;
    ChunkRecord record, again;
    if (!TakeRecord(line, plain, record))
        return 0;
    const std::string written = LineWithRecord(plain, record);
    if (record.job.path.empty() || !TakeRecord(written, plainAgain, again) || plainAgain != plain ||
        LineWithRecord(plainAgain, again) != written)
        std::abort();
    return 0;
}
