#include "batch/SceneJob.h"

#include <algorithm>
#include <span>

#include "batch/Wire.h"

namespace {

constexpr size_t kLeastMessageBytes = 2 + 4 + 4 + 8;
constexpr size_t kLeastInputBytes = 4 + 1;
constexpr size_t kLeastTextBytes = 4;

void PutWireStamp(WireWriter& wire, const FileStamp& stamp)
{
    wire.U64(stamp.sizeBytes);
    wire.U64(static_cast<uint64_t>(stamp.changedNs));
    wire.Text({reinterpret_cast<const char*>(stamp.hash.data()), stamp.hash.size()});
}

FileStamp TakeWireStamp(WireReader& wire)
{
    FileStamp stamp;
    stamp.sizeBytes = wire.U64();
    stamp.changedNs = static_cast<int64_t>(wire.U64());
    const std::string hash = wire.Text();
    if (hash.size() == stamp.hash.size())
        std::copy(hash.begin(), hash.end(), reinterpret_cast<char*>(stamp.hash.data()));
    return stamp;
}

void PutWireCounts(WireWriter& wire, const SceneObjectCounts& counts)
{
    wire.U32(counts.meshes);
    wire.U32(counts.objects);
    wire.U32(counts.cameras);
    wire.U32(counts.lights);
    wire.U64(counts.vertices);
    wire.U64(counts.faces);
}

SceneObjectCounts TakeCounts(WireReader& wire)
{
    SceneObjectCounts counts;
    counts.meshes = wire.U32();
    counts.objects = wire.U32();
    counts.cameras = wire.U32();
    counts.lights = wire.U32();
    counts.vertices = wire.U64();
    counts.faces = wire.U64();
    return counts;
}

void PutWireMessages(WireWriter& wire, std::span<const SceneMessage> messages)
{
    wire.U32(static_cast<uint32_t>(messages.size()));
    for (const SceneMessage& message : messages) {
        wire.U32(message.code);
        wire.U8(static_cast<uint8_t>(message.level));
        wire.Text(message.source);
        wire.Text(message.text);
        wire.U64(message.count);
    }
}

std::vector<SceneMessage> TakeMessages(WireReader& wire)
{
    std::vector<SceneMessage> messages(wire.Count(kLeastMessageBytes));
    for (SceneMessage& message : messages) {
        message.code = static_cast<uint16_t>(wire.U32());
        message.level = static_cast<MessageLevel>(std::min<uint8_t>(wire.U8(), 2));
        message.source = wire.Text();
        message.text = wire.Text();
        message.count = wire.U64();
    }
    return messages;
}

void PutWireInputs(WireWriter& wire, const std::vector<SceneInput>& inputs)
{
    wire.U32(static_cast<uint32_t>(inputs.size()));
    for (const SceneInput& input : inputs) {
        wire.Text(input.path);
        wire.U8(input.isThere);
        if (input.isThere)
            PutWireStamp(wire, input.stamp);
    }
}

std::vector<SceneInput> TakeInputs(WireReader& wire)
{
    std::vector<SceneInput> inputs(wire.Count(kLeastInputBytes));
    for (SceneInput& input : inputs) {
        input.path = wire.Text();
        input.isThere = wire.U8() != 0;
        if (input.isThere)
            input.stamp = TakeWireStamp(wire);
    }
    return inputs;
}

} // namespace

const char* StatusName(SceneStatus status)
{
    static constexpr const char* kNames[kSceneStatuses] = {
        "converted", "up-to-date", "failed", "crashed", "timed-out", "out-of-memory", "skipped"};
    return kNames[static_cast<uint8_t>(status)];
}

bool IsFailure(SceneStatus status)
{
    return status != SceneStatus::kConverted && status != SceneStatus::kUpToDate &&
           status != SceneStatus::kSkipped;
}

const char* LevelName(MessageLevel level)
{
    static constexpr const char* kNames[] = {"note", "warning", "error"};
    return kNames[static_cast<uint8_t>(level)];
}

bool IsTargetKnown(const SceneResult& result)
{
    return result.isTargetWritten || (result.status == SceneStatus::kUpToDate && result.hasSource);
}

MessageLevel SceneResult::Worst() const
{
    MessageLevel worst = MessageLevel::kNote;
    for (const SceneMessage& message : messages)
        worst = std::max(worst, message.level);
    return worst;
}

const SceneMessage* SceneResult::FirstReason() const
{
    const MessageLevel worst = Worst();
    for (const SceneMessage& message : messages) {
        if (message.level == worst)
            return &message;
    }
    return nullptr;
}

std::string EncodeFacts(const SceneResult& result)
{
    WireWriter wire;
    PutWireCounts(wire, result.counts);
    const size_t kept = std::min(result.messages.size(), kMostFacts);
    PutWireMessages(wire, {result.messages.data(), kept});
    wire.U64(result.messagesLeftOut + (result.messages.size() - kept));
    return wire.Bytes();
}

bool DecodeFacts(std::string_view facts, SceneResult& resultOut)
{
    WireReader wire(facts);
    resultOut.counts = TakeCounts(wire);
    resultOut.messages = TakeMessages(wire);
    resultOut.messagesLeftOut = wire.U64();
    return wire.IsAtEnd();
}

std::string EncodeSetup(const WorkerSetup& setup)
{
    WireWriter wire;
    wire.Text(setup.engineOptions);
    wire.U64(setup.memoryBytes);
    wire.U8(setup.isStrict);
    wire.U8(setup.checks);
    wire.U8(setup.imports);
    wire.Text(setup.importOptions);
    wire.U8(setup.isDurable);
    wire.U8(setup.isConfined);
    wire.U64(setup.processorSeconds);
    wire.U32(static_cast<uint32_t>(setup.readable.size()));
    for (const std::string& directory : setup.readable)
        wire.Text(directory);
    return wire.Bytes();
}

bool DecodeSetup(std::string_view message, WorkerSetup& setupOut)
{
    WireReader wire(message);
    setupOut.engineOptions = wire.Text();
    setupOut.memoryBytes = wire.U64();
    setupOut.isStrict = wire.U8() != 0;
    setupOut.checks = wire.U8() != 0;
    setupOut.imports = wire.U8() != 0;
    setupOut.importOptions = wire.Text();
    setupOut.isDurable = wire.U8() != 0;
    setupOut.isConfined = wire.U8() != 0;
    setupOut.processorSeconds = wire.U64();
    setupOut.readable.resize(wire.Count(kLeastTextBytes));
    for (std::string& directory : setupOut.readable)
        directory = wire.Text();
    return wire.IsAtEnd();
}

std::string EncodeJob(const SceneJob& job)
{
    WireWriter wire;
    wire.Text(job.path);
    wire.Text(job.target);
    wire.U8(job.writesTarget);
    wire.Text(job.frame);
    wire.U8(job.draws);
    wire.U8(job.wantsThumb);
    wire.U32(job.ticket);
    return wire.Bytes();
}

bool DecodeJob(std::string_view message, SceneJob& jobOut)
{
    WireReader wire(message);
    jobOut.path = wire.Text();
    jobOut.target = wire.Text();
    jobOut.writesTarget = wire.U8() != 0;
    jobOut.frame = wire.Text();
    jobOut.draws = wire.U8() != 0;
    jobOut.wantsThumb = wire.U8() != 0;
    jobOut.ticket = wire.U32();
    return wire.IsAtEnd();
}

std::string EncodeResult(const SceneResult& result)
{
    WireWriter wire;
    wire.U8(static_cast<uint8_t>(result.status));
    wire.U8(result.isTargetWritten);
    wire.U8(result.isFrameWritten);
    PutWireMessages(wire, result.messages);
    wire.U64(result.messagesLeftOut);
    wire.F64(result.seconds);
    wire.U64(result.peakKiB);
    PutWireCounts(wire, result.counts);
    wire.U8(result.hasSource);
    PutWireStamp(wire, result.source);
    PutWireStamp(wire, result.target);
    PutWireStamp(wire, result.frame);
    PutWireInputs(wire, result.inputs);
    wire.Text(result.thumb);
    return wire.Bytes();
}

bool DecodeResult(std::string_view message, SceneResult& resultOut)
{
    WireReader wire(message);
    const uint8_t status = wire.U8();
    if (status >= kSceneStatuses)
        return false;
    resultOut.status = static_cast<SceneStatus>(status);
    resultOut.isTargetWritten = wire.U8() != 0;
    resultOut.isFrameWritten = wire.U8() != 0;
    resultOut.messages = TakeMessages(wire);
    resultOut.messagesLeftOut = wire.U64();
    resultOut.seconds = wire.F64();
    resultOut.peakKiB = wire.U64();
    resultOut.counts = TakeCounts(wire);
    resultOut.hasSource = wire.U8() != 0;
    resultOut.source = TakeWireStamp(wire);
    resultOut.target = TakeWireStamp(wire);
    resultOut.frame = TakeWireStamp(wire);
    resultOut.inputs = TakeInputs(wire);
    resultOut.thumb = wire.Text();
    return wire.IsAtEnd();
}
