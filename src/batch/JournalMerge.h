#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "batch/BatchState.h"
#include "batch/ChunkName.h"
#include "batch/ChunkRecord.h"
#include "batch/Descriptor.h"
#include "batch/FarmArguments.h"
#include "batch/ReportPage.h"
#include "batch/RootPath.h"

/// Puts the journals of chunks together: one line for each scene, by path, of the journal that was written
/// last. Only paths and the places of lines are kept in memory.
class JournalMerge {
public:
    /// Not owned.
    explicit JournalMerge(const FarmOptions& optionsIn);

    /// Returns the exit status. May throw StateError.
    int Run();

private:
    struct Journal {
        std::string path;
        ChunkName chunk;
        int64_t changedNs = 0;
        bool isWhole = false;
    };
    /// A line of a journal. Paths lie behind each other in `paths`.
    struct Place {
        size_t pathAt;
        uint32_t pathBytes;
        uint32_t journal; ///< they are ordered by age
        uint64_t offset;
        uint32_t lineBytes;
    };

    bool FindJournals();
    void AddJournal(const std::string& directory, const char* name);
    void ReadJournals();
    bool ReadJournal(uint32_t number);
    void SayDamaged(const Journal& journal, size_t line, const char* what);
    void KeepLastResults();
    bool WriteAll();
    bool WriteLines(FILE* stream);
    bool ReadLine(const Place& place, std::string& lineOut);
    bool TakeResult(const Place& place, std::string& lineOut);
    void StoreResult(const ChunkRecord& record);
    bool OpenState();
    size_t SayMissing() const;
    void PrintSummary() const;
    bool Fail(const std::string& text);
    std::string_view PathOf(const Place& place) const
    {
        return std::string_view(paths).substr(place.pathAt, place.pathBytes);
    }

    const FarmOptions& options;
    RootPath root;
    std::string outputFile;
    std::string pageFile;
    BatchOptions stateOptions;
    std::unique_ptr<BatchState> state;
    std::unique_ptr<ReportPage> page;
    std::vector<Journal> journals;
    std::set<ChunkName> wholeChunks;
    std::string paths;
    std::vector<Place> places;
    std::unordered_map<uint32_t, Descriptor> opened; ///< some of the journals
    std::vector<std::string> failed;                 ///< with their reasons
    size_t partialCount = 0;
    size_t damagedCount = 0;
    size_t stored = 0;
    std::string error;
};
