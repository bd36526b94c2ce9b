#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What the name of a chunk tells: "chunk-003-of-040.1a2b3c4d". Chunks of one plan have its id, which is
/// that of their contents, so that journals of different plans are not taken for one another.
struct ChunkName {
    uint32_t number = 0; ///< from 1
    uint32_t count = 0;  ///< chunks of the plan
    std::string plan;    ///< 8 hexadecimal digits

    std::string Text() const;
    /// Reads the name that `text` begins with. False if there is none.
    bool Read(std::string_view text, std::string_view& restOut);

    auto operator<=>(const ChunkName&) const = default;
};

inline constexpr uint32_t kMostChunks = 10000000;
inline constexpr const char* kChunkExtension = ".list";
inline constexpr const char* kWholeJournalExtension = ".jsonl";
inline constexpr const char* kPartialJournalExtension = ".partial";
