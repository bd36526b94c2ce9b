#include "batch/BatchJournal.h"

#include <cerrno>

#include <fcntl.h>

#include "batch/ChunkRecord.h"
#include "batch/JsonLine.h"
#include "batch/MessageTable.h"
#include "batch/SteadyCalls.h"
#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/SyncedFiles.h"

namespace {

constexpr size_t kMostWaiting = 1 << 16;

std::string HexBytes(const std::string& bytes)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        text += kDigits[static_cast<unsigned char>(c) >> 4];
        text += kDigits[c & 15];
    }
    return text;
}

std::string MessagesJson(const SceneResult& result)
{
    std::string json = "[";
    for (const SceneMessage& message : result.messages) {
        JsonLine line;
        line.Text("code", CodeText(message.code))
            .Text("level", LevelName(message.level))
            .Text("source", message.source)
            .Text("text", message.text)
            .Number("count", message.count);
        if (json.size() > 1)
            json += ',';
        json += line.End();
    }
    return json + "]";
}

std::string CountsJson(const SceneObjectCounts& counts)
{
    return JsonLine()
        .Number("meshes", counts.meshes)
        .Number("objects", counts.objects)
        .Number("cameras", counts.cameras)
        .Number("lights", counts.lights)
        .Number("vertices", counts.vertices)
        .Number("faces", counts.faces)
        .End();
}

std::string HashesJson(const SceneJob& job, const SceneResult& result)
{
    JsonLine line;
    if (result.hasSource)
        line.Text("source", HashText(result.source.hash));
    if (IsTargetKnown(result))
        line.Text("target", HashText(result.target.hash));
    const bool isFrameKnown = result.status == SceneStatus::kUpToDate && IsTargetKnown(result);
    if (result.isFrameWritten || (isFrameKnown && !job.frame.empty()))
        line.Text("frame", HashText(result.frame.hash));
    return line.End();
}

} // namespace

std::string JournalLine(const std::string& path, const SceneJob& job, const SceneResult& result)
{
    JsonLine line;
    line.Text("path", path);
    if (!IsUtf8(path))
        line.Text("path_bytes", HexBytes(path));
    line.Text("target", job.target);
    if (!job.frame.empty())
        line.Text("frame", job.frame);
    line.Text("status", StatusName(result.status))
        .Flag("target_written", result.isTargetWritten)
        .Flag("frame_written", result.isFrameWritten)
        .Json("messages", MessagesJson(result))
        .Number("messages_left_out", result.messagesLeftOut)
        .Seconds("seconds", result.seconds)
        .Number("peak_kib", result.peakKiB)
        .Number("bytes_in", result.hasSource ? result.source.sizeBytes : 0)
        .Number("bytes_out", IsTargetKnown(result) ? result.target.sizeBytes : 0)
        .Json("counts", CountsJson(result.counts))
        .Json("hashes", HashesJson(job, result));
    return line.End();
}

bool BatchJournal::Open(const std::string& path, bool isDurableIn)
{
    isDurable = isDurableIn;
    file = OpenAt(AT_FDCWD, path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    return file.IsOpen() && (!isDurable || headless::SyncDirectory(SplitPath(path).directory));
}

void BatchJournal::Add(const std::string& path, const SceneJob& job, const SceneResult& result)
{
    const std::string line = JournalLine(path, job, result);
    waiting += recorder ? recorder->LineOf(line, job, result) : line;
    waiting += '\n';
    if (waiting.size() > kMostWaiting)
        Flush();
}

bool BatchJournal::Flush()
{
    size_t at = 0;
    while (at < waiting.size() && failure == 0) {
        const ssize_t put = write(file.Get(), waiting.data() + at, waiting.size() - at);
        if (put >= 0)
            at += static_cast<size_t>(put);
        else if (errno != EINTR)
            failure = errno;
    }
    waiting.clear();
    if (isDurable && failure == 0 && fdatasync(file.Get()) != 0 && errno != EINVAL)
        failure = errno;
    errno = failure;
    return failure == 0;
}
