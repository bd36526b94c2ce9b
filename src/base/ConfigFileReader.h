#pragma once

#include <cstdint>

#include "base/HeapArray.h"
#include "base/SearchTree.h"
#include "base/String.h"
#include "base/TextFileReader.h"

/// Results of `ConfigFileReader::GetString`.
inline constexpr int32_t kConfigOk = 0;
inline constexpr int32_t kConfigKeyNotFound = 1;
inline constexpr int32_t kConfigNoEntry = 2;
inline constexpr int32_t kConfigNoValue = 9;

/// Reads configuration files. A line that begins with `#` starts an entry, one with `##` a child of
/// the last entry without a parent; `;` begins a comment line; a value in double quotes follows its
/// key; `{` and `}` make blocks. Lines and entries count from 0. Broken blocks are `Error`s.
class ConfigFileReader : public TextFileReader {
public:
    struct ConfigEntry {
        int32_t firstLine = 0;
        int32_t lineCount = 0;
        int32_t parent = -1; ///< entry number, or -1
    };

    ConfigFileReader();

    /// The key of the line that names an entry, such as `desc`. Without one no names are indexed.
    void SetDescKey(const char* key) { descKey.Assign(key); }
    /// Whether keys compare by case; default off.
    void SetCaseSensitive(bool isSensitive) { caseSensitive = isSensitive ? 1 : 0; }
    /// A reader that is asked first by `GetString`; not owned, lives with the caller. Null for none.
    void SetBaseReader(ConfigFileReader* reader) { baseReader = reader; }

    /// Loads a file: 0 or a code of `TextFileReader`. With `withIndex` also finds lines, entries,
    /// blocks and names.
    int32_t Load(const char* name, bool withIndex);
    /// The same from `size` bytes in memory; `name` serves in messages.
    int32_t LoadContent(const char* name, const void* bytes, int32_t size, bool withIndex);

    int32_t GetEntryCount() const { return entryCount; }
    /// The entry, owned by the reader, or null for a number out of range.
    const ConfigEntry* GetEntry(int32_t entry) const;
    /// Lines of an entry, or of the file for -1; -1 for an entry out of range.
    int32_t GetEntryLineCount(int32_t entry) const;
    /// Block depth at the start of a line; 0 before the first entry and out of range.
    int32_t GetBlockLevel(int32_t line) const;
    /// Number of the entry with that name, or -1. An empty name is an `Error`.
    int32_t FindEntry(const char* name);

    /// Offset of `key` in a line, or -1. The key must be the line's first word, followed by a blank
    /// or `=`. QUIRK: a key whose first character is below `A` matches as a prefix as well, which is
    /// how `#` finds the entries.
    int32_t FindKeyInLine(int32_t line, const char* key) const;
    /// The first line with `key` in the entry, or in the whole file for -1. -1 when not found, -2
    /// for an entry out of range. QUIRK: an entry inherits from its parent, one level and no more.
    int32_t FindKeyLine(const char* key, int32_t entry) const;
    /// Copies the value of a key, truncated to `size` - 1 bytes; on failure the buffer is unchanged. The
    /// key is `key`, then `index1`, then `_` and `index2`, if these are 0 or above. Returns one
    /// of the `kConfig` results.
    int32_t GetString(const char* key, char* bufferOut, int32_t size, int32_t entry,
                      int32_t index1 = -1, int32_t index2 = -1);
    /// Whether the last value came from the base reader.
    bool FoundInBase() const { return foundInBase != 0; }

private:
    void Reset(const char* name);
    int32_t IndexContent(bool withIndex);
    int32_t BuildIndex(bool withIndex);
    int32_t FindKeyInLines(const char* key, int32_t firstLine, int32_t number) const;
    int32_t CopyQuoted(int32_t line, int32_t offset, char* bufferOut, int32_t size) const;
    void FindEntries();
    void FindBlocks();
    void ScanBlockLine(int32_t line, int32_t* depth);
    void BuildNameIndex();

    ConfigFileReader* baseReader = nullptr; ///< not owned
    SearchTree<int> nameTree;               ///< name of an entry to its number
    String descKey;
    int32_t caseSensitive = 0;
    int32_t foundInBase = 0;
    HeapArray<ConfigEntry> entries; ///< owned; `entryCount` of them
    /// Owned; block depth at the start of each line. A search is never limited to a block, so there
    /// is neither a block filter nor a first line of one.
    HeapArray<int32_t> lineBlockLevel;
    int32_t entryCount = 0;
};
