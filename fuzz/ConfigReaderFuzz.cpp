// Any configuration file: lines, entries, blocks, names and every value that can be read.

#include "base/ConfigFileReader.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "base/Log.h"

static void AskForValues(ConfigFileReader& reader, int32_t entry)
{
    char value[16];
    for (const char* key : {"desc", "tex", "#", "path"}) {
        for (int32_t index = -1; index <= 2; ++index) {
            const int32_t result =
                reader.GetString(key, value, sizeof value, entry, index, index - 1);
            if (result == kConfigOk && std::strlen(value) >= sizeof value)
                std::abort();
        }
        const int32_t line = reader.FindKeyLine(key, entry);
        if (line >= reader.GetLineCount() || (line >= 0 && reader.FindKeyInLine(line, key) < 0))
            std::abort();
    }
}

static void ReadAll(ConfigFileReader& reader, const uint8_t* data, size_t size)
{
    if (reader.LoadContent("fuzz.cfg", data, static_cast<int32_t>(size), true) != kTextFileOk)
        return;
    for (int32_t line = 0; line < reader.GetLineCount(); ++line) {
        if (!reader.GetLine(line) || reader.GetBlockLevel(line) < 0)
            std::abort();
    }
    int32_t lines = 0;
    for (int32_t entry = -1; entry <= reader.GetEntryCount(); ++entry) {
        if (entry < 64) // the cost is lines times entries
            AskForValues(reader, entry);
        const ConfigFileReader::ConfigEntry* found = reader.GetEntry(entry);
        lines += found ? found->lineCount : 0;
        if (found && (found->parent >= entry || found->lineCount < 1))
            std::abort();
    }
    if (lines > reader.GetLineCount())
        std::abort();
    reader.FindEntry("boat");
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    gLogEntries = kMaxLogEntries; // nothing is written
    ConfigFileReader reader;
    reader.SetDescKey("desc");
    try {
        ReadAll(reader, data, size);
    } catch (const ErrorMsg&) {
        // Broken blocks, and names that a tree refuses.
    }
    return 0;
}
