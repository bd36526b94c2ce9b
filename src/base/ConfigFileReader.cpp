#include "base/ConfigFileReader.h"

#include <cstring>

#include "base/Ascii.h"
#include "base/WithMemory.h"

static constexpr int32_t kNameSize = 1024; // of an entry's name, terminator included

ConfigFileReader::ConfigFileReader()
{
    SetClassName("ConfigFileReader");
}

void ConfigFileReader::Reset(const char* name)
{
    ClearText();
    SetFileName(name);
    nameTree.Clear();
    entries.Free();
    lineBlockLevel.Free();
    entryCount = 0;
    foundInBase = 0;
}

int32_t ConfigFileReader::Load(const char* name, bool withIndex)
{
    Reset(name);
    const int32_t result = ReadFile();
    return result == kTextFileOk ? IndexContent(withIndex) : result;
}

int32_t ConfigFileReader::LoadContent(const char* name, const void* bytes, int32_t size,
                                      bool withIndex)
{
    Reset(name);
    SetContent(bytes, size);
    return IndexContent(withIndex);
}

int32_t ConfigFileReader::IndexContent(bool withIndex)
{
    int32_t result = kTextFileCannotRead;
    WithMemory([&] { result = BuildIndex(withIndex); },
               [&] { Error("Out of memory for resource '%s'", fileName); });
    return result;
}

int32_t ConfigFileReader::BuildIndex(bool withIndex)
{
    if (withIndex) {
        const int32_t result = BuildLineIndex();
        if (result != kTextFileOk)
            return result;
        FindEntries();
        FindBlocks();
        BuildNameIndex();
    }
    isLoaded = 1;
    return kTextFileOk;
}

void ConfigFileReader::FindEntries()
{
    entryCount = 0;
    for (int32_t line = 0; line < lineCount; ++line)
        entryCount += FindKeyInLine(line, "#") >= 0 ? 1 : 0;

    entries = HeapArray<ConfigEntry>(entryCount);
    int32_t entry = 0;
    int32_t lastTop = -1; // the nearest earlier entry without a parent
    for (int32_t line = 0; line < lineCount; ++line) {
        const int32_t offset = FindKeyInLine(line, "#");
        if (offset < 0)
            continue;
        const bool isChild =
            offset + 1 < lineLength[line] && fileData[lineStart[line] + offset + 1] == '#';
        entries[entry].firstLine = line;
        entries[entry].parent = isChild ? lastTop : -1;
        if (entries[entry].parent < 0)
            lastTop = entry;
        ++entry;
    }
    for (int32_t i = 0; i < entryCount; ++i) {
        const int32_t next = i + 1 < entryCount ? entries[i + 1].firstLine : lineCount;
        entries[i].lineCount = next - entries[i].firstLine;
    }
}

void ConfigFileReader::FindBlocks()
{
    lineBlockLevel = HeapArray<int32_t>(lineCount);
    int32_t depth = 0;
    for (int32_t entry = 0; entry < entryCount; ++entry) {
        // QUIRK: every entry starts at depth 0 again, so an unclosed block in the previous one is not
        // noticed; only the last entry is checked for it.
        depth = 0;
        const int32_t end = entries[entry].firstLine + entries[entry].lineCount;
        for (int32_t line = entries[entry].firstLine; line < end; ++line) {
            lineBlockLevel[line] = depth;
            ScanBlockLine(line, &depth);
        }
    }
    if (depth != 0)
        Error("Unfinished block in file '%s'", fileName);
}

void ConfigFileReader::ScanBlockLine(int32_t line, int32_t* depth)
{
    bool braceSeen = false;
    for (int32_t i = 0; i < lineLength[line]; ++i) {
        const char c = fileData[lineStart[line] + i];
        if (braceSeen && static_cast<unsigned char>(c) > 32) {
            Error("Invalid block start/end in file '%s' at line %i", fileName, line);
            return;
        }
        if (c == '}' && *depth < 1) {
            Error("Invalid '}' in file '%s' at line %i", fileName, line);
            return;
        }
        if (c == '{' || c == '}') {
            *depth += c == '{' ? 1 : -1;
            braceSeen = true;
        }
    }
}

void ConfigFileReader::BuildNameIndex()
{
    if (descKey.IsEmpty())
        return;
    for (int32_t entry = 0; entry < entryCount; ++entry) {
        char name[kNameSize];
        if (GetString(descKey.c_str(), name, sizeof name, entry) != kConfigOk) {
            Warning("No 'desc' entry in entry %i in file '%s'", entry, fileName);
            continue;
        }
        if (auto* record = nameTree.Insert(name))
            record->data = entry;
        else
            Warning("'desc' entry in '%s' (%i) not unique: '%s'", fileName, entry, name);
    }
}

const ConfigFileReader::ConfigEntry* ConfigFileReader::GetEntry(int32_t entry) const
{
    return entry >= 0 && entry < entryCount ? &entries[entry] : nullptr;
}

int32_t ConfigFileReader::GetEntryLineCount(int32_t entry) const
{
    if (entry == -1)
        return lineCount;
    const ConfigEntry* found = GetEntry(entry);
    return found ? found->lineCount : -1;
}

int32_t ConfigFileReader::GetBlockLevel(int32_t line) const
{
    return lineBlockLevel && line >= 0 && line < lineCount ? lineBlockLevel[line] : 0;
}

int32_t ConfigFileReader::FindEntry(const char* name)
{
    const auto* record = nameTree.Find(name);
    return record ? record->data : -1;
}

int32_t ConfigFileReader::FindKeyInLine(int32_t line, const char* key) const
{
    if (line < 0 || line >= lineCount || !key)
        return -1;
    const char* text = fileData.Get() + lineStart[line];
    const int32_t length = lineLength[line];
    int32_t at = 0;
    while (at < length && (text[at] == ' ' || text[at] == '\t'))
        ++at;
    const size_t keyLength = std::strlen(key);
    const size_t left = static_cast<size_t>(length - at);
    if (keyLength > left || (left > 0 && text[at] == ';'))
        return -1;
    const int difference = caseSensitive ? std::strncmp(text + at, key, keyLength)
                                         : CompareNoCase(text + at, key, keyLength);
    if (difference != 0)
        return -1;
    const char behind = keyLength < left ? text[at + static_cast<int32_t>(keyLength)] : '\0';
    const bool standsAlone = behind == ' ' || behind == '=';
    return standsAlone || key[0] < 'A' ? at : -1;
}

int32_t ConfigFileReader::FindKeyInLines(const char* key, int32_t firstLine, int32_t number) const
{
    for (int32_t line = firstLine; line < firstLine + number; ++line) {
        if (FindKeyInLine(line, key) >= 0)
            return line;
    }
    return -1;
}

int32_t ConfigFileReader::FindKeyLine(const char* key, int32_t entry) const
{
    if (entry == -1)
        return FindKeyInLines(key, 0, lineCount);
    const ConfigEntry* own = GetEntry(entry);
    if (!own)
        return -2;
    const int32_t line = FindKeyInLines(key, own->firstLine, own->lineCount);
    const ConfigEntry* parent = GetEntry(own->parent);
    return line < 0 && parent ? FindKeyInLines(key, parent->firstLine, parent->lineCount) : line;
}

int32_t ConfigFileReader::GetString(const char* key, char* bufferOut, int32_t size, int32_t entry,
                                    int32_t index1, int32_t index2)
{
    String name;
    if (index1 >= 0 && index2 >= 0)
        name.Format("%s%i_%i", key, index1, index2);
    else if (index1 >= 0)
        name.Format("%s%i", key, index1);
    else
        name.Assign(key);

    foundInBase = 0;
    if (baseReader && baseReader->GetString(name.c_str(), bufferOut, size, -1) == kConfigOk) {
        foundInBase = 1;
        return kConfigOk;
    }
    if (entry != -1 && !GetEntry(entry))
        return kConfigNoEntry;
    const int32_t line = FindKeyLine(name.c_str(), entry);
    if (line < 0)
        return kConfigKeyNotFound;
    return CopyQuoted(line, FindKeyInLine(line, name.c_str()) + name.TextLength(), bufferOut, size);
}

/// Copies the text between the first two double quotes of a line from `offset` on.
int32_t ConfigFileReader::CopyQuoted(int32_t line, int32_t offset, char* bufferOut,
                                     int32_t size) const
{
    const char* text = fileData.Get() + lineStart[line];
    const int32_t length = lineLength[line];
    int32_t open = offset;
    while (open < length && text[open] != '"')
        ++open;
    int32_t close = open + 1;
    while (close < length && text[close] != '"')
        ++close;
    if (close >= length || size < 1)
        return kConfigNoValue;

    const int32_t wanted = close - open - 1;
    const int32_t copied = wanted < size ? wanted : size - 1;
    std::memcpy(bufferOut, text + open + 1, static_cast<size_t>(copied));
    bufferOut[copied] = 0;
    return kConfigOk;
}
