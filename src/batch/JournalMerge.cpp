#include "batch/JournalMerge.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "base/FileStream.h"
#include "base/WriteWholeFile.h"
#include "batch/BatchText.h"
#include "batch/ConvertScenes.h"
#include "batch/LineBuffer.h"
#include "batch/RunBatch.h"
#include "batch/SteadyCalls.h"
#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/DescriptorStream.h"
#include "platform/headless/win32/DirectoryEntries.h"

namespace {

constexpr size_t kMostOpen = 256;          // journals
constexpr size_t kMostUncommitted = 10000; // results

std::string ReasonText(const SceneResult& result)
{
    const SceneMessage* const reason = result.FirstReason();
    return OneLine(reason ? reason->text : StatusName(result.status));
}

} // namespace

JournalMerge::JournalMerge(const FarmOptions& optionsIn) : options(optionsIn)
{}

bool JournalMerge::Fail(const std::string& text)
{
    error = text;
    return false;
}

// ---- Reading

void JournalMerge::AddJournal(const std::string& directory, const char* name)
{
    Journal journal;
    std::string_view rest;
    struct stat info;
    journal.path = directory + "/" + name;
    if (!journal.chunk.Read(name, rest) || !rest.starts_with('.') ||
        stat(journal.path.c_str(), &info) != 0)
        return;
    journal.isWhole = rest.ends_with(kWholeJournalExtension);
    if (!journal.isWhole && !rest.ends_with(kPartialJournalExtension))
        return;
    partialCount += !journal.isWhole;
    journal.changedNs = StampOf(info).changedNs;
    journals.push_back(std::move(journal));
}

/// Orders them by age.
bool JournalMerge::FindJournals()
{
    const std::string directory = root.Absolute(options.journalDirectory);
    const bool isRead = headless::VisitEntries(
        directory, [&](const dirent& entry) { AddJournal(directory, entry.d_name); });
    if (!isRead)
        return Fail("the directory '" + options.journalDirectory + "' cannot be read: " +
                    std::strerror(errno) + "; name that of 'qsbatch run --journal-dir'");
    if (journals.empty())
        return Fail("there is no journal of a chunk in '" + options.journalDirectory +
                    "': name the directory of 'qsbatch run --journal-dir'");
    std::sort(journals.begin(), journals.end(), [](const Journal& a, const Journal& b) {
        return a.changedNs != b.changedNs ? a.changedNs < b.changedNs : a.path < b.path;
    });
    return true;
}

void JournalMerge::SayDamaged(const Journal& journal, size_t line, const char* what)
{
    ++damagedCount;
    std::fprintf(stderr, "qsbatch: %s:%zu: %s; its chunk has to be run again\n",
                 OneLine(journal.path).c_str(), line, what);
}

/// False if not all of it can be used.
bool JournalMerge::ReadJournal(uint32_t number)
{
    const Journal& journal = journals[number];
    const FileStream stream(headless::OpenDescriptorStream(journal.path.c_str(), "rbe"));
    size_t lines = 0, damagedLines = 0;
    uint64_t offset = 0;
    ChunkRecord record;
    std::string plain;
    LineBuffer buffer;
    // A line without its end is damaged: what is left out then is a part of it.
    for (ssize_t got = stream ? getline(&buffer.text, &buffer.room, stream.get()) : -1; got > 0;
         got = getline(&buffer.text, &buffer.room, stream.get())) {
        ++lines;
        const std::string_view line(buffer.text, static_cast<size_t>(got));
        if (TakeRecord(line.substr(0, line.size() - 1), plain, record)) {
            const std::string& path = record.job.path;
            places.push_back({paths.size(), static_cast<uint32_t>(path.size()), number, offset,
                              static_cast<uint32_t>(line.size() - 1)});
            paths += path;
        } else {
            ++damagedLines;
            SayDamaged(journal, lines, "the line is damaged");
        }
        offset += line.size();
    }
    const bool isRead = stream && std::ferror(stream.get()) == 0;
    const bool isWhole = isRead && lines > damagedLines && lines >= record.sceneCount;
    if (!isWhole && damagedLines == 0)
        SayDamaged(journal, lines, isRead ? "lines are missing from here on" : "it cannot be read");
    return isWhole && damagedLines == 0;
}

void JournalMerge::ReadJournals()
{
    for (uint32_t i = 0; i < journals.size(); ++i) {
        if (journals[i].isWhole && ReadJournal(i))
            wholeChunks.insert(journals[i].chunk);
    }
}

/// Of several results of a scene the one of the newest journal; of one journal the last.
void JournalMerge::KeepLastResults()
{
    std::sort(places.begin(), places.end(), [this](const Place& a, const Place& b) {
        const int order = PathOf(a).compare(PathOf(b));
        if (order != 0)
            return order < 0;
        return a.journal != b.journal ? a.journal > b.journal : a.offset > b.offset;
    });
    const auto end =
        std::unique(places.begin(), places.end(),
                    [this](const Place& a, const Place& b) { return PathOf(a) == PathOf(b); });
    places.erase(end, places.end());
}

// ---- Writing

bool JournalMerge::OpenState()
{
    if (options.batch.stateFile.empty())
        return true;
    const std::string path = root.Absolute(options.batch.stateFile);
    const std::string directory = SplitPath(path).directory;
    if (!MakeDirectory(AT_FDCWD, directory).IsOpen())
        return Fail("the directory '" + directory + "' of the state cannot be made: " +
                    std::strerror(errno) + "; choose another place with --state");
    state = std::make_unique<BatchState>(path, stateOptions);
    return true;
}

void JournalMerge::StoreResult(const ChunkRecord& record)
{
    SceneResult result = record.result;
    for (SceneInput& input : result.inputs)
        input.path = InputBelow(root.Place(), input.path);
    SceneEntry entry;
    entry.path = record.job.path;
    state->UseKeys(record.keys);
    state->Store(entry, record.job, result);
    if (++stored % kMostUncommitted == 0)
        state->Commit();
}

bool JournalMerge::ReadLine(const Place& place, std::string& lineOut)
{
    const std::string& path = journals[place.journal].path;
    if (opened.size() >= kMostOpen && !opened.contains(place.journal))
        opened.clear();
    Descriptor& file = opened[place.journal];
    if (!file.IsOpen())
        file = OpenAt(AT_FDCWD, path.c_str(), O_RDONLY | O_CLOEXEC);
    lineOut.resize(place.lineBytes);
    const ssize_t got =
        ReadAt(file.Get(), lineOut.data(), lineOut.size(), static_cast<off_t>(place.offset));
    if (got == static_cast<ssize_t>(lineOut.size()))
        return true;
    return Fail("the journal '" + path +
                "' cannot be read: " + (got < 0 ? std::strerror(errno) : "it has become shorter"));
}

bool JournalMerge::TakeResult(const Place& place, std::string& lineOut)
{
    std::string line;
    ChunkRecord record;
    if (!ReadLine(place, line))
        return false;
    if (!TakeRecord(line, lineOut, record))
        return Fail("the journal '" + journals[place.journal].path + "' has changed meanwhile");
    const std::string path(PathOf(place));
    if (IsFailure(record.result.status))
        failed.push_back(OneLine(path) + ": " + ReasonText(record.result));
    if (page)
        page->Add(path, record.result, record.job.draws);
    if (state)
        StoreResult(record);
    return true;
}

bool JournalMerge::WriteLines(FILE* stream)
{
    std::string line;
    for (const Place& place : places) {
        if (!TakeResult(place, line))
            return false;
        line += '\n';
        if (std::fwrite(line.data(), 1, line.size(), stream) != line.size())
            return false;
    }
    return true;
}

/// Texts of failures that are not ours come from `errno`.
bool JournalMerge::WriteAll()
{
    const bool isWritten =
        WriteWholeFile(outputFile, [&](std::FILE* stream) { return WriteLines(stream); });
    if (!error.empty())
        return false;
    if (!isWritten)
        return Fail("the journal '" + outputFile + "' cannot be written: " + std::strerror(errno) +
                    "; choose another place with -o");
    if (page && !page->Write())
        return Fail("the page '" + pageFile + "' cannot be written: " + std::strerror(errno) +
                    "; choose another place with --report");
    if (state)
        state->Commit();
    return true;
}

// ---- Telling

size_t JournalMerge::SayMissing() const
{
    ChunkName chunk = journals.back().chunk;
    size_t missing = 0;
    for (chunk.number = 1; chunk.number <= chunk.count; ++chunk.number) {
        if (wholeChunks.contains(chunk))
            continue;
        ++missing;
        std::fprintf(stderr, "qsbatch: %s has no complete journal: run it again\n",
                     chunk.Text().c_str());
    }
    return missing;
}

void JournalMerge::PrintSummary() const
{
    std::printf("%s scenes from %s chunks, %s failed, %s attempts did not come to their end\n",
                GroupedNumber(places.size()).c_str(), GroupedNumber(wholeChunks.size()).c_str(),
                GroupedNumber(failed.size()).c_str(), GroupedNumber(partialCount).c_str());
    for (const std::string& scene : failed)
        std::printf("%s\n", scene.c_str());
}

int JournalMerge::Run()
{
    if (!root.Open(options.root))
        return BatchTrouble("the root '" + options.root + "' cannot be used: " +
                            std::strerror(errno) + "; name another one with --root");
    outputFile = root.Absolute(options.output);
    if (!FindJournals())
        return BatchTrouble(error);
    if (!root.Enter())
        return BatchTrouble("the root '" + options.root +
                            "' cannot be entered: " + std::strerror(errno));
    if (!OpenState())
        return BatchTrouble(error);
    ReadJournals();
    KeepLastResults();
    if (!options.batch.reportFile.empty()) {
        pageFile = root.Absolute(options.batch.reportFile);
        page = std::make_unique<ReportPage>(pageFile, places.size());
    }
    if (!WriteAll())
        return BatchTrouble(error);
    PrintSummary();
    const size_t missing = SayMissing();
    return failed.empty() && missing == 0 && damagedCount == 0 ? kBatchWell : kBatchFailures;
}
