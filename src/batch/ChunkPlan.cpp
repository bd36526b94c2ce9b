#include "batch/ChunkPlan.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "base/WriteWholeFile.h"
#include "batch/BatchText.h"
#include "batch/ChunkName.h"
#include "batch/ContentHash.h"
#include "batch/ConvertScenes.h"
#include "batch/RunBatch.h"
#include "batch/ScenePlan.h"
#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/DirectoryEntries.h"

namespace {

constexpr const char* kOtherOutput = "; choose another place with -o";

std::string ListOf(const SceneChunk& chunk)
{
    std::string text;
    for (const ChunkScene* const scene : chunk.scenes) {
        text += scene->path;
        text += '\0';
    }
    return text;
}

/// Lists of other scenes, or of the same ones shared out in another way, have another id.
std::string PlanIdOf(const std::vector<SceneChunk>& chunks)
{
    std::string all;
    for (const SceneChunk& chunk : chunks) {
        all += ListOf(chunk);
        all += '\0';
    }
    return HashText(HashOf(all)).substr(0, 8);
}

bool IsChunkFile(const char* name)
{
    ChunkName chunk;
    std::string_view rest;
    return chunk.Read(name, rest) && rest == kChunkExtension;
}

} // namespace

ChunkPlan::ChunkPlan(const FarmOptions& optionsIn) : options(optionsIn), batch(optionsIn.batch)
{}

bool ChunkPlan::Fail(const std::string& text)
{
    error = text;
    return false;
}

/// Finds the scenes, whose paths are relative to the root from then on, and goes there.
bool ChunkPlan::Collect()
{
    if (!root.Open(options.root))
        return Fail("the root '" + options.root + "' cannot be used: " + std::strerror(errno) +
                    "; name another one with --root");
    if (!list.Collect(batch))
        return Fail(list.error);
    SayUnread(list);
    for (size_t i = 0; i < list.Entries().size(); ++i) {
        const SceneEntry& entry = list.Entries()[i];
        const auto below = root.Below(entry.path);
        if (!below)
            return Fail("'" + entry.path + "' is not below the root '" + options.root +
                        "': name a directory that all scenes are below with --root");
        list.MoveTo(i, *below);
    }
    directory = root.Absolute(options.output);
    batch.outDirectory = root.FromRoot(batch.outDirectory);
    batch.framesDirectory = root.FromRoot(batch.framesDirectory);
    if (!batch.stateFile.empty())
        batch.stateFile = root.Absolute(batch.stateFile);
    return root.Enter() ||
           Fail("the root '" + options.root + "' cannot be entered: " + std::strerror(errno));
}

/// A state that is not there yet knows nothing, and is not made.
bool ChunkPlan::OpenState()
{
    struct stat info;
    if (!batch.stateFile.empty() && stat(batch.stateFile.c_str(), &info) == 0)
        state = std::make_unique<BatchState>(batch.stateFile, batch);
    return true;
}

/// Takes what has to be converted and names what cannot be.
void ChunkPlan::Choose()
{
    TargetLayout layout(batch);
    layout.FindConflicts(list.Entries());
    ScenePlan plan(batch, list, layout, state.get());
    for (PlannedScene scene = plan.Next(); scene.kind != PlannedScene::Kind::kDone;
         scene = plan.Next()) {
        const SceneEntry& entry = list.Entries()[scene.number];
        if (scene.kind == PlannedScene::Kind::kJob) {
            scenes.push_back({entry.path, entry.sizeBytes});
        } else if (IsFailure(scene.result.status)) {
            ++refused;
            std::fprintf(stderr, "%s: %s\n", OneLine(entry.path).c_str(),
                         OneLine(scene.result.messages.front().text).c_str());
        } else {
            ++upToDate;
        }
    }
    state = nullptr;
}

bool ChunkPlan::RemoveOldChunks()
{
    const Descriptor opened = MakeDirectory(AT_FDCWD, directory);
    std::vector<std::string> old;
    const bool isRead =
        opened.IsOpen() && headless::VisitEntries(directory, [&](const dirent& entry) {
            if (IsChunkFile(entry.d_name))
                old.emplace_back(entry.d_name);
        });
    if (!isRead)
        return Fail("the directory '" + directory + "' cannot be made: " + std::strerror(errno) +
                    kOtherOutput);
    for (const std::string& leaf : old) {
        if (unlinkat(opened.Get(), leaf.c_str(), 0) != 0)
            return Fail("the old chunk '" + directory + "/" + leaf +
                        "' cannot be removed: " + std::strerror(errno) + kOtherOutput);
    }
    return true;
}

void ChunkPlan::PrintSummary(const std::vector<SceneChunk>& chunks) const
{
    if (batch.quiet)
        return;
    uint64_t total = 0, most = 0;
    for (const SceneChunk& chunk : chunks) {
        total += chunk.sizeBytes;
        most = std::max(most, chunk.sizeBytes);
    }
    std::printf("%s scenes in %s chunks", GroupedNumber(scenes.size()).c_str(),
                GroupedNumber(chunks.size()).c_str());
    if (!chunks.empty())
        std::printf(", %s bytes, at most %s in a chunk", GroupedNumber(total).c_str(),
                    GroupedNumber(most).c_str());
    std::printf("; %s up to date, %s refused\n", GroupedNumber(upToDate).c_str(),
                GroupedNumber(refused).c_str());
    if (chunks.empty())
        std::printf("there is nothing to convert: no chunk is written\n");
}

bool ChunkPlan::Write()
{
    const size_t count = options.chunkCount > 0 ? static_cast<size_t>(options.chunkCount)
                                                : ChunkCountFor(scenes, options.chunkBytes);
    const std::vector<SceneChunk> chunks = BalancedChunks(scenes, count);
    if (!RemoveOldChunks())
        return false;
    ChunkName name;
    name.count = static_cast<uint32_t>(chunks.size());
    name.plan = PlanIdOf(chunks);
    for (const SceneChunk& chunk : chunks) {
        ++name.number;
        const std::string path = directory + "/" + name.Text() + kChunkExtension;
        if (!WriteWholeFile(path, ListOf(chunk)))
            return Fail("the chunk '" + path + "' cannot be written: " + std::strerror(errno) +
                        kOtherOutput);
    }
    PrintSummary(chunks);
    return true;
}

int ChunkPlan::Run()
{
    if (!Collect() || !OpenState())
        return BatchTrouble(error);
    Choose();
    if (!Write())
        return BatchTrouble(error);
    return refused > 0 || !list.Unread().empty() ? kBatchFailures : kBatchWell;
}
