#include "batch/ChunkRun.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include "batch/BatchState.h"
#include "batch/ChunkRecord.h"
#include "batch/ConvertScenes.h"
#include "batch/Descriptor.h"
#include "batch/RunBatch.h"
#include "batch/SteadyCalls.h"
#include "batch/SteadyClock.h"
#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/TemporaryName.h"
#include "platform/headless/win32/Uninterrupted.h"

namespace {

constexpr const char* kOtherJournals = "; choose another place with --journal-dir";
constexpr int kMostJournals = 1000; // of processes with one id

/// Of this process on this start of this machine.
std::string AttemptText()
{
    const headless::TemporaryOwner self = headless::TemporaryOwner::ThisProcess();
    return self.host + "-" + self.boot + "-" + std::to_string(self.process);
}

/// Everything that was written so far stays, whatever happens to the machine.
bool KeepOnDisk(const std::string& path)
{
    const Descriptor opened = OpenAt(AT_FDCWD, path.c_str(), O_RDONLY | O_CLOEXEC);
    return opened.IsOpen() && headless::Uninterrupted([&] { return fsync(opened.Get()); }) == 0;
}

} // namespace

ChunkRun::ChunkRun(const FarmOptions& optionsIn)
    : options(optionsIn),
      batch(optionsIn.batch),
      began(SecondsOfClock())
{}

bool ChunkRun::Fail(const std::string& text)
{
    error = text;
    return false;
}

bool ChunkRun::ReadChunkName()
{
    std::string_view rest;
    const std::string leaf = SplitPath(options.chunkFile).leaf;
    if (chunk.Read(leaf, rest) && rest == kChunkExtension)
        return true;
    return Fail("'" + options.chunkFile +
                "' is no chunk by its name; --chunk needs a file of 'qsbatch plan'");
}

/// Other paths are relative to the directory where the program was started, so they come first.
bool ChunkRun::EnterRoot()
{
    if (!root.Open(options.root))
        return Fail("the root '" + options.root + "' cannot be used: " + std::strerror(errno) +
                    "; name another one with --root");
    batch.listFile = root.Absolute(options.chunkFile);
    batch.listHasNulls = true;
    if (access(batch.listFile.c_str(), R_OK) != 0)
        return Fail("the chunk '" + options.chunkFile + "' cannot be read: " +
                    std::strerror(errno) + "; name another one with --chunk");
    batch.outDirectory = root.FromRoot(batch.outDirectory);
    batch.framesDirectory = root.FromRoot(batch.framesDirectory);
    journalPath =
        root.Absolute(options.journalDirectory) + "/" + chunk.Text() + "." + AttemptText();
    return root.Enter() ||
           Fail("the root '" + options.root + "' cannot be entered: " + std::strerror(errno));
}

/// Containers of one machine may have processes with one id, so a name may be taken.
bool ChunkRun::MakeJournal()
{
    const std::string directory = root.Absolute(options.journalDirectory);
    int failure = EEXIST;
    if (!MakeDirectory(AT_FDCWD, directory).IsOpen())
        failure = errno;
    const std::string first = journalPath;
    for (int i = 2; failure == EEXIST && i <= kMostJournals; ++i) {
        batch.journalFile = journalPath + kPartialJournalExtension;
        const Descriptor made = OpenAt(AT_FDCWD, batch.journalFile.c_str(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (made.IsOpen())
            return true;
        failure = errno;
        journalPath = first + "-" + std::to_string(i);
    }
    return Fail("no journal can be made in '" + directory + "': " + std::strerror(failure) +
                kOtherJournals);
}

bool ChunkRun::KeepJournal()
{
    const std::string whole = journalPath + kWholeJournalExtension;
    const bool isKept = KeepOnDisk(batch.journalFile) &&
                        std::rename(batch.journalFile.c_str(), whole.c_str()) == 0 &&
                        KeepOnDisk(SplitPath(whole).directory);
    return isKept || Fail("the journal '" + batch.journalFile +
                          "' cannot be kept: " + std::strerror(errno) + kOtherJournals);
}

bool ChunkRun::Prepare()
{
    if (!ReadChunkName() || !EnterRoot())
        return false;
    if (!list.Collect(batch))
        return Fail(list.error);
    if (list.Entries().empty())
        return Fail("the chunk '" + options.chunkFile +
                    "' is empty; --chunk needs a file of 'qsbatch plan'");
    return MakeJournal();
}

int ChunkRun::Run()
{
    batch.keepsThumbs = true;
    if (!Prepare())
        return BatchTrouble(error);
    SayUnread(list);
    TargetLayout layout(batch);
    layout.FindConflicts(list.Entries());
    const ChunkRecorder recorder(BatchState::KeysOf(batch), root.Place(), list.Entries().size());
    const ConversionEnd end = ConvertScenes(batch, list, layout, nullptr, began, &recorder);
    if (end.isWhole && !KeepJournal())
        return BatchTrouble(error);
    return end.status;
}
