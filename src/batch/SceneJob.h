#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "batch/ContentHash.h"

/// What a worker is told once, at its start.
struct WorkerSetup {
    std::string engineOptions;         ///< as on the converter's own command line
    uint64_t memoryBytes = 0;          ///< of address space; 0 for no limit
    bool isStrict = false;             ///< a warning keeps the target as it was
    bool checks = false;               ///< the written file is read again
    bool imports = false;              ///< sources that are no scenes are models
    std::string importOptions;         ///< as on the importer's own command line
    bool isDurable = false;            ///< results are on the disk before they are told
    bool isConfined = false;           ///< is closed in before it reads its one scene
    uint64_t processorSeconds = 0;     ///< of a confined worker
    std::vector<std::string> readable; ///< directories, for a confined worker
};

/// One scene to convert. Paths are absolute or relative to where the program was started.
struct SceneJob {
    std::string path;
    std::string target;
    bool writesTarget = true; ///< false: the target stays, only the frame is drawn
    std::string frame;        ///< empty: the frame is not kept
    bool draws = false;       ///< also without keeping the frame
    bool wantsThumb = false;  ///< a small picture for the report
    uint32_t ticket = 0;      ///< of a job that may be taken back; else 0
};

enum class SceneStatus : uint8_t {
    kConverted,
    kUpToDate,
    kFailed,
    kCrashed,
    kTimedOut,
    kOutOfMemory,
    kSkipped
};
inline constexpr uint8_t kSceneStatuses = 7;

/// "converted", "up-to-date", ...
const char* StatusName(SceneStatus status);
/// Whether the status counts as failed in the end.
bool IsFailure(SceneStatus status);

enum class MessageLevel : uint8_t { kNote, kWarning, kError };

/// "note", "warning" or "error".
const char* LevelName(MessageLevel level);

/// A text of the converter with its place in the table of messages.
struct SceneMessage {
    uint16_t code = 0; ///< see MessageTable.h
    MessageLevel level = MessageLevel::kNote;
    std::string source; ///< label of the class that reports
    std::string text;
    uint64_t count = 1; ///< how often in a row it was reported
};

/// A file that a conversion looked for besides its source.
struct SceneInput {
    std::string path; ///< absolute, as it was asked for
    bool isThere = false;
    FileStamp stamp; ///< if it is there
};

struct SceneObjectCounts {
    uint32_t meshes = 0;
    uint32_t objects = 0;
    uint32_t cameras = 0;
    uint32_t lights = 0; ///< with the default lights
    uint64_t vertices = 0;
    uint64_t faces = 0;
};

/// What became of a job.
struct SceneResult {
    SceneStatus status = SceneStatus::kFailed;
    bool isTargetWritten = false;
    bool isFrameWritten = false;
    std::vector<SceneMessage> messages;
    uint64_t messagesLeftOut = 0; ///< reported and not kept, as there were too many
    double seconds = 0;
    uint64_t peakKiB = 0;
    SceneObjectCounts counts;
    bool hasSource = false; ///< whether the stamp of the source is known
    FileStamp source;       ///< with a `DependableTime`, as those of the inputs
    FileStamp target;       ///< if it was written
    FileStamp frame;        ///< if it was written
    std::vector<SceneInput> inputs;
    std::string thumb; ///< a JPEG picture of at most 160 x 120

    /// The most severe level of the messages; notes if there are none.
    MessageLevel Worst() const;
    /// The first of the most severe messages; null if there is none.
    const SceneMessage* FirstReason() const;
};

/// Whether the stamp of the target is that of a file that is there.
bool IsTargetKnown(const SceneResult& result);

/// Objects and messages of a result, for a run in which the scene is up to date. At most `kMostFacts`
/// messages.
std::string EncodeFacts(const SceneResult& result);
/// Changes only what `EncodeFacts` takes; false, and nothing of use, for bytes that are damaged.
bool DecodeFacts(std::string_view facts, SceneResult& resultOut);
inline constexpr size_t kMostFacts = 100;

std::string EncodeSetup(const WorkerSetup& setup);
bool DecodeSetup(std::string_view message, WorkerSetup& setupOut);
std::string EncodeJob(const SceneJob& job);
bool DecodeJob(std::string_view message, SceneJob& jobOut);
std::string EncodeResult(const SceneResult& result);
/// False, and nothing of use, for a message that is damaged.
bool DecodeResult(std::string_view message, SceneResult& resultOut);
