// Any rows in the file of a state, whose tables and pages are the library's own: what is known of a scene is
// examined, told and stored anew.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include <sqlite3.h>

#include "base/Log.h"
#include "batch/BatchState.h"
#include "fuzz/support/Mutation.h"
#include "fuzz/support/ScratchDirectory.h"

namespace {

constexpr int kColumns = 18;
constexpr const char* kScene = "/none/a.qsa";

/// Hands out the bytes of an input; zeros behind its end.
class Bytes {
public:
    explicit Bytes(std::string_view bytes) : rest(bytes) {}

    uint8_t Next()
    {
        const auto byte = static_cast<uint8_t>(rest.empty() ? 0 : rest.front());
        rest.remove_prefix(rest.empty() ? 0 : 1);
        return byte;
    }
    std::string_view Some(size_t most)
    {
        const std::string_view some = rest.substr(0, std::min(most, rest.size()));
        rest.remove_prefix(some.size());
        return some;
    }
    bool IsEmpty() const { return rest.empty(); }

private:
    std::string_view rest;
};

/// The file of a state, and a connection of its own to fill it before the state is opened.
class Table {
public:
    Table() : path((directory.Path() / "state").string())
    {
        gLogEntries = kMaxLogEntries; // nothing is written
        keys = BatchState::KeysOf(options);
        BatchState(path, options); // makes the tables
    }

    void Run(const char* sql)
    {
        if (sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK)
            return;
        std::fprintf(stderr, "%s\n", sqlite3_errmsg(database.get()));
        std::abort();
    }

    /// A row of values of any kind; kind 0 is the one that the reader hopes for.
    void Insert(const char* sql, int columns, const std::string* hoped, Bytes& in)
    {
        sqlite3_stmt* made = nullptr;
        if (sqlite3_prepare_v2(database.get(), sql, -1, &made, nullptr) != SQLITE_OK)
            std::abort();
        for (int i = 1; i <= columns; ++i) {
            const uint8_t kind = in.Next();
            const std::string_view bytes = kind % 5 == 2 ? in.Some(in.Next()) : in.Some(kind % 5);
            if (kind % 5 == 0 && !hoped[i - 1].empty())
                sqlite3_bind_blob(made, i, hoped[i - 1].data(),
                                  static_cast<int>(hoped[i - 1].size()), SQLITE_TRANSIENT);
            else if (kind % 5 == 1)
                sqlite3_bind_int64(made, i, static_cast<int8_t>(bytes.empty() ? 0 : bytes[0]));
            else if (kind % 5 == 3)
                sqlite3_bind_text(made, i, bytes.data(), static_cast<int>(bytes.size()),
                                  SQLITE_TRANSIENT);
            else if (kind % 5 == 2)
                sqlite3_bind_blob(made, i, bytes.data(), static_cast<int>(bytes.size()),
                                  SQLITE_TRANSIENT);
        }
        sqlite3_step(made); // a value that a column does not take leaves no row
        sqlite3_finalize(made);
    }

    void Use();
    void Fill(Bytes& in);

    BatchOptions options;

private:
    ScratchDirectory directory;
    std::string path;
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> database{nullptr, sqlite3_close};
    StateKeys keys;
};

void Table::Fill(Bytes& in)
{
    const std::string target = "/none/a.qsb", frame = "/none/a.png";
    const std::string scene[kColumns] = {kScene,
                                         "",
                                         "",
                                         "",
                                         std::string(16, '\0'),
                                         std::string("\1\0\0\0\2\0\0\0", 8),
                                         target,
                                         keys.target,
                                         "",
                                         "",
                                         "",
                                         frame,
                                         keys.frame,
                                         "",
                                         "",
                                         "",
                                         "thumb",
                                         EncodeFacts({})};
    const std::string input[5] = {"", "/none/b.png", "", "", ""};
    sqlite3* opened = nullptr;
    if (sqlite3_open(path.c_str(), &opened) != SQLITE_OK)
        std::abort();
    database.reset(opened);
    Run("PRAGMA synchronous=OFF; BEGIN; DELETE FROM scene; DELETE FROM input");
    Insert("INSERT OR REPLACE INTO scene VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,?14,?15,"
           "?16,?17,?18)",
           kColumns, scene, in);
    for (int i = 0; i < 3 && !in.IsEmpty(); ++i)
        Insert("INSERT OR REPLACE INTO input VALUES(?1,?2,?3,?4,?5)", 5, input, in);
    Run("COMMIT");
    database.reset();
}

void Table::Use()
{
    SceneEntry entry;
    entry.path = kScene;
    SceneJob job;
    job.path = kScene;
    job.target = "/none/a.qsb";
    job.frame = "/none/a.png";
    job.draws = job.wantsThumb = true;
    std::string why;
    BatchState state(path, options);
    SceneResult result;
    if (state.Examine(entry, job, why))
        std::abort(); // its target is not there
    if (why.empty())
        std::abort();
    state.AddFacts(entry, result);
    result.status = SceneStatus::kConverted;
    state.Store(entry, job, result);
    state.Commit();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Table table;
    Bytes in(TextOf(data, size));
    table.Fill(in);
    try {
        table.Use();
    } catch (const StateError& error) {
        if (error.text.empty())
            std::abort();
    }
    return 0;
}
