#include "batch/BatchState.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/StartGraphics.h"
#include "base/KRE_Base.h"
#include "batch/BatchArguments.h"
#include "batch/SourceTrees.h"
#include "batch/WorkingDirectory.h"
#include "gfx/DefaultPaths.h"
#include "platform/LittleEndian.h"
#include "platform/headless/win32/HostPath.h"

namespace {

std::string_view BytesOf(const ContentHash& hash)
{
    return {reinterpret_cast<const char*>(hash.data()), hash.size()};
}

std::string KeyText(const std::string& text)
{
    return std::string(BytesOf(HashOf(text)));
}

FileStamp StampFrom(StateStatement& row, int column)
{
    FileStamp stamp;
    stamp.sizeBytes = static_cast<uint64_t>(row.Number(column));
    stamp.changedNs = row.Number(column + 1);
    const std::string_view hash = row.Bytes(column + 2);
    if (hash.size() == stamp.hash.size())
        std::memcpy(stamp.hash.data(), hash.data(), hash.size());
    return stamp;
}

void PutStamp(StateStatement& statement, int place, const FileStamp& stamp)
{
    statement.Put(place, static_cast<int64_t>(stamp.sizeBytes));
    statement.Put(place + 1, stamp.changedNs);
    statement.PutBytes(place + 2, BytesOf(stamp.hash));
}

/// The default directories of pictures and effects, as workers read them.
std::string DefaultPathsText()
{
    try {
        MakeEngine();
    } catch (const KRE_Error&) { // nothing but memory can be missing here
        throw std::bad_alloc();
    }
    ReadDefaultPaths();
    ShutdownGraphics();
    return std::string("\n") + gDefaultTexturePath + "\n" + gDefaultBasePath;
}

constexpr size_t kIdBytes = sizeof(uint32_t);
constexpr size_t kMostInputsInMemory = 4096;
constexpr size_t kMostDirectoriesInMemory = 64; // source, target and frame of neighbours

// Columns of `find`.
enum FoundColumn {
    kFoundStatus,
    kFoundSource,
    kFoundInputs = kFoundSource + 3,
    kFoundTargetPath,
    kFoundTargetKey,
    kFoundTarget,
    kFoundFramePath = kFoundTarget + 3,
    kFoundFrameKey,
    kFoundFrame,
    kFoundThumb = kFoundFrame + 3,
    kFoundFacts
};

} // namespace

BatchState::BatchState(const std::string& path, const BatchOptions& optionsIn,
                       const SourceTrees* treesIn)
    : statePath(path),
      options(optionsIn),
      trees(treesIn),
      database(statePath, options.durable),
      find(database.Handle(),
           "SELECT status,size,time,hash,inputs,target,target_key,target_size,target_time,"
           "target_hash,frame,frame_key,frame_size,frame_time,frame_hash,thumb,facts"
           " FROM scene WHERE path=?1"),
      findInput(database.Handle(), "SELECT path,size,time,hash FROM input WHERE id=?1"),
      renewInput(database.Handle(), "UPDATE input SET time=?2 WHERE id=?1"),
      findSameInput(database.Handle(),
                    "SELECT id FROM input WHERE path=?1 AND size IS ?2 AND hash IS ?3"),
      addInput(database.Handle(), "INSERT INTO input(path,size,time,hash) VALUES(?1,?2,?3,?4)"),
      renewSource(database.Handle(), "UPDATE scene SET time=?2 WHERE path=?1"),
      storeScene(
          database.Handle(),
          "INSERT OR REPLACE INTO scene(path,status,size,time,hash,inputs,target,target_key,"
          "target_size,target_time,target_hash,facts) VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12)"),
      storeFrame(database.Handle(),
                 "UPDATE scene SET frame=?2,frame_key=?3,frame_size=?4,frame_time=?5,"
                 "frame_hash=?6,thumb=?7,facts=?8 WHERE path=?1"),
      storeFailure(database.Handle(), "INSERT INTO scene(path,status) VALUES(?1,?2)"
                                      " ON CONFLICT(path) DO UPDATE SET status=?2")
{
    keys = KeysOf(options);
    // Also finds a state that holds something else.
    wasEmpty = database.Ask("SELECT EXISTS(SELECT 1 FROM scene)") == 0;
}

BatchState::~BatchState()
{
    try {
        Commit();
    } catch (const StateError&) {
        return; // told by the last commit of the run
    } catch (const std::bad_alloc&) {
        return;
    }
}

StateKeys BatchState::KeysOf(const BatchOptions& options)
{
    const std::string program = std::string(kBatchVersion) + DefaultPathsText() + "\n";
    return {KeyText(program + options.TargetKey()),
            KeyText(program + options.TargetKey() + options.FrameKey())};
}

// ---- Where it is

std::string BatchState::AbsoluteDirectory(const std::string& directory)
{
    const auto known = absoluteDirectories.find(directory);
    if (known != absoluteDirectories.end())
        return known->second;
    const std::unique_ptr<char, void (*)(void*)> found(realpath(directory.c_str(), nullptr),
                                                       std::free);
    std::string absolute = found ? found.get() : directory;
    if (absoluteDirectories.size() >= kMostDirectoriesInMemory)
        absoluteDirectories.clear();
    if (found)
        absoluteDirectories.emplace(directory, absolute);
    return absolute;
}

std::string BatchState::AbsolutePath(const std::string& path)
{
    const SplitPath split(path);
    const std::string directory = AbsoluteDirectory(split.directory);
    return directory == "/" ? directory + split.leaf : directory + "/" + split.leaf;
}

std::string BatchState::KeyOf(const SceneEntry& entry)
{
    return AbsolutePath(entry.path);
}

// ---- Looking

bool BatchState::Examine(const SceneEntry& entry, SceneJob& job, std::string& whyOut)
{
    if (options.force) {
        whyOut = "--force is given";
        return false;
    }
    whyOut = "it is new";
    if (wasEmpty)
        return false;
    const std::string key = KeyOf(entry);
    find.PutBytes(1, key);
    bool isDone = false;
    if (!find.Step())
        return false;
    if (IsTargetCurrent(entry, job, whyOut)) {
        isDone = !job.draws || IsFrameCurrent(job, whyOut);
        if (!isDone)
            job.writesTarget = false;
    }
    find.Reset();
    return isDone;
}

bool BatchState::IsTargetCurrent(const SceneEntry& entry, const SceneJob& job, std::string& whyOut)
{
    if (find.Number(kFoundStatus) != static_cast<int64_t>(SceneStatus::kConverted)) {
        whyOut = "it failed the last time";
        return false;
    }
    if (find.Bytes(kFoundTargetKey) != keys.target) {
        whyOut = "the program or the options have changed";
        return false;
    }
    if (!IsSourceCurrent(entry, whyOut) || !AreInputsCurrent(find.Bytes(kFoundInputs), whyOut))
        return false;
    const std::string target = AbsolutePath(job.target);
    if (find.Bytes(kFoundTargetPath) != target) {
        whyOut = "the target goes to another place";
        return false;
    }
    if (IsFileCurrent(target, StampFrom(find, kFoundTarget)))
        return true;
    whyOut = "the target is gone or was changed";
    return false;
}

bool BatchState::IsSourceCurrent(const SceneEntry& entry, std::string& whyOut)
{
    const FileStamp known = StampFrom(find, kFoundSource);
    if (!options.rehash && entry.Stamp().HasSizeAndTimeOf(known))
        return true;
    FileStamp now;
    const int64_t readAt = FileClockNs();
    const bool isSame = entry.sizeBytes == known.sizeBytes &&
                        StampOfFile(AT_FDCWD, entry.path.c_str(), now) && now.hash == known.hash;
    if (!isSame) {
        whyOut = "the scene has changed";
        return false;
    }
    Begin();
    const std::string key = KeyOf(entry); // has to live until the statement has run
    renewSource.PutBytes(1, key).Put(2, DependableTime(now, readAt));
    renewSource.Run();
    return true;
}

/// A file that this program has written, with its stamp from then.
bool BatchState::IsFileCurrent(const std::string& path, const FileStamp& known) const
{
    struct stat info;
    if (stat(path.c_str(), &info) != 0)
        return false;
    FileStamp now = StampOf(info);
    if (!options.rehash && now.HasSizeAndTimeOf(known))
        return true;
    return now.sizeBytes == known.sizeBytes && StampOfFile(AT_FDCWD, path.c_str(), now) &&
           now.hash == known.hash;
}

bool BatchState::IsFrameCurrent(const SceneJob& job, std::string& whyOut)
{
    whyOut = "the frame is new";
    if (find.Bytes(kFoundFrameKey) != keys.frame)
        return false;
    if (job.wantsThumb && find.Bytes(kFoundThumb).empty())
        return false;
    if (job.frame.empty())
        return true;
    const std::string frame = AbsolutePath(job.frame);
    if (find.Bytes(kFoundFramePath) != frame)
        return false;
    whyOut = "the frame is gone or was changed";
    return IsFileCurrent(frame, StampFrom(find, kFoundFrame));
}

bool BatchState::AreInputsCurrent(std::string_view ids, std::string& whyOut)
{
    for (; ids.size() >= kIdBytes; ids.remove_prefix(kIdBytes)) {
        const auto id = LoadLittle<uint32_t>(ids.data());
        std::string path;
        if (IsInputCurrent(id, path))
            continue;
        whyOut = "a file that it uses has changed, come or gone: " + path;
        return false;
    }
    return true;
}

/// Each one is looked at once in a run: many scenes share their pictures.
bool BatchState::IsInputCurrent(int64_t id, std::string& pathOut)
{
    const auto known = inputsCurrent.find(id);
    if (known != inputsCurrent.end() && known->second)
        return true;
    KnownInput input;
    findInput.Put(1, id);
    if (findInput.Step()) {
        input.path = findInput.Bytes(0);
        input.isThere = !findInput.IsNothing(3);
        if (input.isThere)
            input.stamp = StampFrom(findInput, 1);
        findInput.Reset();
    }
    pathOut = input.path;
    if (known != inputsCurrent.end())
        return false;
    const bool isCurrent = !input.path.empty() && CompareInput(id, input);
    KeepFewInputs();
    inputsCurrent.emplace(id, isCurrent);
    if (isCurrent)
        inputsStored[input.path] = {id, input.isThere, input.stamp};
    return isCurrent;
}

/// Whether a worker finds the file.
bool BatchState::IsFound(const std::string& path, struct stat& infoOut) const
{
    return stat(path.c_str(), &infoOut) == 0 && !S_ISDIR(infoOut.st_mode) &&
           access(path.c_str(), R_OK) == 0 && (!trees || trees->HaveFile(path));
}

bool BatchState::CompareInput(int64_t id, const KnownInput& known)
{
    const std::string path = headless::ResolveHostPath(known.path.c_str());
    struct stat info;
    const bool isThere = IsFound(path, info);
    if (!isThere || !known.isThere)
        return isThere == known.isThere;
    FileStamp now = StampOf(info);
    if (!options.rehash && now.HasSizeAndTimeOf(known.stamp))
        return true;
    const int64_t readAt = FileClockNs();
    if (now.sizeBytes != known.stamp.sizeBytes || !StampOfFile(AT_FDCWD, path.c_str(), now) ||
        now.hash != known.stamp.hash)
        return false;
    Begin();
    renewInput.Put(1, id).Put(2, DependableTime(now, readAt));
    renewInput.Run();
    return true;
}

void BatchState::AddFacts(const SceneEntry& entry, SceneResult& result)
{
    const std::string key = KeyOf(entry);
    find.PutBytes(1, key);
    if (find.Step()) {
        result.hasSource = true;
        result.source = StampFrom(find, kFoundSource);
        result.target = StampFrom(find, kFoundTarget);
        result.frame = StampFrom(find, kFoundFrame);
        result.thumb = find.Bytes(kFoundThumb);
        DecodeFacts(find.Bytes(kFoundFacts), result);
    }
    find.Reset();
}

// ---- Noting

void BatchState::Begin()
{
    if (isInTransaction)
        return;
    database.Execute("BEGIN");
    isInTransaction = true;
}

void BatchState::Commit()
{
    if (!isInTransaction)
        return;
    isInTransaction = false;
    database.Execute("COMMIT");
}

int64_t BatchState::IdOfInput(const SceneInput& input)
{
    const auto known = inputsStored.find(input.path);
    if (known != inputsStored.end() && known->second.isThere == input.isThere &&
        known->second.stamp.hash == input.stamp.hash &&
        known->second.stamp.sizeBytes == input.stamp.sizeBytes)
        return known->second.id;
    const int64_t id = StoreInput(input);
    KeepFewInputs();
    inputsStored[input.path] = {id, input.isThere, input.stamp};
    return id;
}

/// A file with a content that was seen before has its row.
int64_t BatchState::StoreInput(const SceneInput& input)
{
    findSameInput.PutBytes(1, input.path);
    if (input.isThere) {
        findSameInput.Put(2, static_cast<int64_t>(input.stamp.sizeBytes))
            .PutBytes(3, BytesOf(input.stamp.hash));
    } else {
        findSameInput.PutNothing(2).PutNothing(3);
    }
    if (findSameInput.Step()) {
        const int64_t id = findSameInput.Number(0);
        findSameInput.Reset();
        return id;
    }
    addInput.PutBytes(1, input.path);
    if (input.isThere) {
        PutStamp(addInput, 2, input.stamp);
    } else {
        addInput.PutNothing(2).PutNothing(3).PutNothing(4);
    }
    addInput.Run();
    return sqlite3_last_insert_rowid(database.Handle());
}

/// Files that many scenes share come again soon; those of one scene would only fill the memory.
void BatchState::KeepFewInputs()
{
    if (inputsStored.size() >= kMostInputsInMemory)
        inputsStored.clear();
    if (inputsCurrent.size() >= kMostInputsInMemory)
        inputsCurrent.clear();
}

std::string BatchState::PackInputs(const std::vector<SceneInput>& inputs)
{
    std::string ids;
    for (const SceneInput& input : inputs) {
        char id[kIdBytes];
        StoreLittle(id, static_cast<uint32_t>(IdOfInput(input)));
        ids.append(id, sizeof id);
    }
    return ids;
}

void BatchState::Store(const SceneEntry& entry, const SceneJob& job, const SceneResult& result)
{
    if (result.status == SceneStatus::kSkipped || result.status == SceneStatus::kUpToDate)
        return;
    Begin();
    const std::string key = KeyOf(entry);
    if (result.status != SceneStatus::kConverted) {
        storeFailure.PutBytes(1, key).Put(2, static_cast<int64_t>(result.status));
        storeFailure.Run();
        return;
    }
    const std::string facts = EncodeFacts(result);
    if (job.writesTarget) {
        const std::string inputs = PackInputs(result.inputs);
        const std::string target = AbsolutePath(job.target);
        storeScene.PutBytes(1, key).Put(2, static_cast<int64_t>(result.status));
        PutStamp(storeScene, 3, result.source);
        storeScene.PutBytes(6, inputs).PutBytes(7, target).PutBytes(8, keys.target);
        PutStamp(storeScene, 9, result.target);
        storeScene.PutBytes(12, facts);
        storeScene.Run();
    }
    if (!job.draws)
        return;
    const std::string frame = job.frame.empty() ? "" : AbsolutePath(job.frame);
    storeFrame.PutBytes(1, key).PutBytes(2, frame).PutBytes(3, keys.frame);
    PutStamp(storeFrame, 4, result.frame);
    storeFrame.PutBytes(7, result.thumb).PutBytes(8, facts);
    storeFrame.Run();
}
