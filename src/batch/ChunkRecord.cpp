#include "batch/ChunkRecord.h"

#include "batch/Base64.h"
#include "batch/ContentHash.h"
#include "batch/Wire.h"

namespace {

constexpr uint8_t kRecordVersion = 1;
constexpr std::string_view kRecordStart = ",\"record\":\"";
constexpr std::string_view kRecordEnd = "\"}";

std::string_view TextOfHash(const ContentHash& hash)
{
    return {reinterpret_cast<const char*>(hash.data()), hash.size()};
}

/// Of the line and of its record.
std::string CheckOf(std::string_view line, std::string_view record)
{
    const ContentHash lineHash = HashOf(line);
    std::string both(TextOfHash(lineHash));
    const ContentHash recordHash = HashOf(record);
    both += TextOfHash(recordHash);
    const ContentHash hash = HashOf(both);
    return std::string(TextOfHash(hash));
}

std::string EncodeRecord(const ChunkRecord& record)
{
    WireWriter wire;
    wire.U8(kRecordVersion);
    wire.U32(record.sceneCount);
    wire.Text(record.keys.target);
    wire.Text(record.keys.frame);
    wire.Text(EncodeJob(record.job));
    wire.Text(EncodeResult(record.result));
    return wire.Bytes();
}

bool DecodeRecord(std::string_view bytes, ChunkRecord& recordOut)
{
    WireReader wire(bytes);
    if (wire.U8() != kRecordVersion)
        return false;
    recordOut.sceneCount = wire.U32();
    recordOut.keys.target = wire.Text();
    recordOut.keys.frame = wire.Text();
    const std::string job = wire.Text();
    const std::string result = wire.Text();
    return wire.IsAtEnd() && DecodeJob(job, recordOut.job) &&
           DecodeResult(result, recordOut.result) && !recordOut.job.path.empty();
}

} // namespace

std::string LineWithRecord(const std::string& line, const ChunkRecord& record)
{
    const std::string bytes = EncodeRecord(record);
    std::string whole = line.substr(0, line.size() - 1); // without its bracket
    whole += kRecordStart;
    whole += Base64(CheckOf(line, bytes) + bytes);
    whole += kRecordEnd;
    return whole;
}

bool TakeRecord(std::string_view line, std::string& lineOut, ChunkRecord& recordOut)
{
    const size_t start = line.rfind(kRecordStart);
    if (start == std::string_view::npos || !line.ends_with(kRecordEnd))
        return false;
    lineOut = line.substr(0, start);
    lineOut += '}';
    line.remove_prefix(start + kRecordStart.size());
    line.remove_suffix(kRecordEnd.size());
    std::string bytes;
    constexpr size_t kCheckBytes = sizeof(ContentHash);
    if (!BytesOfBase64(line, bytes) || bytes.size() < kCheckBytes)
        return false;
    const std::string_view record = std::string_view(bytes).substr(kCheckBytes);
    return CheckOf(lineOut, record) == bytes.substr(0, kCheckBytes) &&
           DecodeRecord(record, recordOut);
}

ChunkRecorder::ChunkRecorder(const StateKeys& keysIn, const std::string& root, size_t sceneCountIn)
    : keys(keysIn),
      prefix(root + "/"),
      sceneCount(static_cast<uint32_t>(sceneCountIn))
{}

std::string ChunkRecorder::LineOf(const std::string& line, const SceneJob& job,
                                  const SceneResult& result) const
{
    ChunkRecord record{sceneCount, keys, job, result};
    for (SceneInput& input : record.result.inputs) {
        if (input.path.starts_with(prefix))
            input.path.erase(0, prefix.size());
    }
    return LineWithRecord(line, record);
}

std::string InputBelow(const std::string& root, const std::string& path)
{
    const bool isAbsolute = path.starts_with('/') || path.starts_with('\\');
    return isAbsolute ? path : root + "/" + path;
}
