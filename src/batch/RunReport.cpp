#include "batch/RunReport.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

#include "batch/BatchState.h"
#include "batch/BatchText.h"
#include "batch/MessageTable.h"
#include "batch/ReportPage.h"
#include "batch/WorkingDirectory.h"

namespace {

constexpr const char* kStateCure = "; choose another place with --state";
constexpr double kKeepInterval = 0.5; // seconds of work that a killed run may have to do again

/// Messages of one kind, told by the first of them.
struct FoldedMessage {
    const SceneMessage* first;
    uint64_t count;
};

std::vector<FoldedMessage> Folded(const std::vector<SceneMessage>& messages)
{
    std::vector<FoldedMessage> folded;
    for (const SceneMessage& message : messages) {
        const auto same =
            std::find_if(folded.begin(), folded.end(), [&](const FoldedMessage& other) {
                return other.first->code == message.code && other.first->level == message.level &&
                       (message.code != kCodeUnknown || other.first->text == message.text);
            });
        if (same == folded.end())
            folded.push_back({&message, message.count});
        else
            same->count += message.count;
    }
    return folded;
}

/// Without the file's name, which many messages begin with: the path is in front of it already.
std::string TextAfterName(const std::string& path, const std::string& text)
{
    const std::string name = path.substr(path.rfind('/') + 1) + ": ";
    return OneLine(text.starts_with(name) ? text.substr(name.size()) : text);
}

std::string FoldedText(const std::string& path, const FoldedMessage& message)
{
    std::string text = TextAfterName(path, message.first->text);
    if (message.count > 1)
        text += " and " + GroupedNumber(message.count - 1) + " more";
    return text;
}

} // namespace

RunReport::RunReport(const BatchOptions& optionsIn, const SceneList& listIn, BatchState* stateIn,
                     ReportPage* pageIn)
    : options(optionsIn),
      list(listIn),
      state(stateIn),
      page(pageIn),
      status(!optionsIn.quiet)
{
    progress.total = list.Entries().size();
}

bool RunReport::OpenJournal()
{
    if (options.journalFile.empty() || journal.Open(options.journalFile, options.durable))
        return true;
    AddTrouble("the journal '" + options.journalFile + "' cannot be made: " + std::strerror(errno) +
               "; choose another place with --journal");
    return false;
}

std::string RunReport::PageTrouble() const
{
    return "the page '" + options.reportFile + "' cannot be written: " + std::strerror(errno) +
           "; choose another place with --report";
}

/// The page is written at the end of the run, which is late to find that it cannot be.
bool RunReport::CheckPagePlace()
{
    struct stat info;
    const bool isDirectory = stat(options.reportFile.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
    if (isDirectory)
        errno = EISDIR;
    if (!page ||
        (!isDirectory && access(SplitPath(options.reportFile).directory.c_str(), W_OK) == 0))
        return true;
    AddTrouble(PageTrouble());
    return false;
}

void RunReport::AddTrouble(const std::string& text)
{
    if (trouble.empty())
        trouble = text;
}

void RunReport::Done(size_t number, const SceneJob& job, const SceneResult& result)
{
    const SceneEntry& entry = list.Entries()[number];
    Count(number, result);
    SayMessages(entry.path, result);
    try {
        SceneResult known;
        const bool isKnown = result.status == SceneStatus::kUpToDate && state;
        if (isKnown && (page || journal.IsOpen())) {
            known.status = result.status;
            state->AddFacts(entry, known);
        }
        Record(entry.path, job, isKnown ? known : result);
        if (state)
            state->Store(entry, job, result);
    } catch (const StateError& error) {
        AddTrouble("the state '" + state->Path() + "' cannot be written: " + error.text +
                   kStateCure);
        state = nullptr;
    }
}

void RunReport::Record(const std::string& path, const SceneJob& job, const SceneResult& result)
{
    if (journal.IsOpen())
        journal.Add(path, job, result);
    if (page)
        page->Add(path, result, options.Draws());
}

void RunReport::Count(size_t number, const SceneResult& result)
{
    ++progress.done;
    progress.bytesIn += result.source.sizeBytes;
    if (result.status == SceneStatus::kConverted)
        ++progress.converted;
    else if (result.status == SceneStatus::kUpToDate)
        ++upToDate;
    else if (result.status == SceneStatus::kSkipped)
        ++skipped;
    if (!IsFailure(result.status)) {
        withWarnings += result.Worst() == MessageLevel::kWarning;
        return;
    }
    ++progress.failed;
    const SceneMessage* const reason = result.FirstReason();
    failed.push_back({number, reason ? reason->text : StatusName(result.status)});
    failed.back().reason.shrink_to_fit();
}

void RunReport::SayMessages(const std::string& path, const SceneResult& result)
{
    const MessageLevel least = options.quiet     ? MessageLevel::kError
                               : options.verbose ? MessageLevel::kNote
                                                 : MessageLevel::kWarning;
    for (const FoldedMessage& message : Folded(result.messages)) {
        if (message.first->level >= least)
            status.Say(OneLine(path) + ": " + LevelName(message.first->level) + " " +
                       CodeText(message.first->code) + ": " + FoldedText(path, message));
    }
    if (result.messagesLeftOut > 0 && !options.quiet)
        status.Say(OneLine(path) + ": " + GroupedNumber(result.messagesLeftOut) + " more messages");
    if (options.verbose)
        status.Say(OneLine(path) + ": " + StatusName(result.status));
}

void RunReport::Tick(double now)
{
    if (startedAt < 0)
        startedAt = keptAt = now;
    progress.seconds = now - startedAt;
    if (now - keptAt >= kKeepInterval) {
        keptAt = now;
        Keep();
    }
    status.Show(progress);
}

/// The journal goes first: what the state calls done has its line.
void RunReport::Keep()
{
    if (journal.IsOpen() && !journal.Flush())
        AddTrouble("the journal '" + options.journalFile + "' cannot be written: " +
                   std::strerror(errno) + "; choose another place with --journal");
    try {
        if (state)
            state->Commit();
    } catch (const StateError& error) {
        AddTrouble("the state '" + state->Path() + "' cannot be written: " + error.text +
                   kStateCure);
        state = nullptr;
    }
}

void RunReport::Finish(double now)
{
    Tick(now);
    Keep();
    status.Clear();
    if (page && !page->Write())
        AddTrouble(PageTrouble());
    PrintSummary();
}

void RunReport::PrintSummary() const
{
    if (!options.quiet || progress.failed > 0) {
        std::printf("%s converted, %s up to date, %s failed, %s with warnings",
                    GroupedNumber(progress.converted).c_str(), GroupedNumber(upToDate).c_str(),
                    GroupedNumber(progress.failed).c_str(), GroupedNumber(withWarnings).c_str());
        if (skipped > 0)
            std::printf(", %s skipped", GroupedNumber(skipped).c_str());
        std::printf(" in %s s\n", TenthsText(progress.seconds).c_str());
    }
    for (const FailedScene& scene : failed)
        std::printf("%s: %s\n", OneLine(list.Entries()[scene.number].path).c_str(),
                    TextAfterName(list.Entries()[scene.number].path, scene.reason).c_str());
}
