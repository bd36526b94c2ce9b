// Any rows in the file of a state, whose tables and pages are the library's own: what is known of a scene is
// examined, told and stored anew.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

/// The library opens files in memory from now on, by their paths. One thread uses it.
void KeepFilesInMemory()
{
    sqlite3_config(SQLITE_CONFIG_SINGLETHREAD);
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    if (sqlite3_initialize() != SQLITE_OK ||
        sqlite3_vfs_register(sqlite3_vfs_find("memdb"), 1) != SQLITE_OK)
        std::abort();
}

using Database = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

Database Opened(const std::string& path)
{
    sqlite3* opened = nullptr;
    if (sqlite3_open(path.c_str(), &opened) != SQLITE_OK)
        std::abort();
    return {opened, sqlite3_close};
}

/// A file in memory. It is there as long as this object.
class StateFile {
public:
    explicit StateFile(const std::string& path) : holder(Opened(path))
    {
        sqlite3_file_control(holder.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    }
    std::string Bytes()
    {
        sqlite3_int64 size = 0;
        file->pMethods->xFileSize(file, &size);
        std::string bytes(static_cast<size_t>(size), '\0');
        if (file->pMethods->xRead(file, bytes.data(), static_cast<int>(size), 0) != SQLITE_OK)
            std::abort();
        return bytes;
    }
    void Put(std::string_view bytes)
    {
        file->pMethods->xTruncate(file, 0);
        const auto size = static_cast<int>(bytes.size());
        if (file->pMethods->xWrite(file, bytes.data(), size, 0) != SQLITE_OK)
            std::abort();
    }

private:
    Database holder; ///< reads and writes nothing itself
    sqlite3_file* file = nullptr;
};

/// The file of a state, and a database with the same tables, whose rows are put into the file before the state is
/// opened.
class Table {
public:
    Table() : path((directory.Path() / "state").string())
    {
        gLogEntries = kMaxLogEntries; // nothing is written
        KeepFilesInMemory();
        keys = BatchState::KeysOf(options);
        file = std::make_unique<StateFile>(path);
        BatchState(path, options); // makes the tables
        CopyTables();
        begin = Prepared("BEGIN");
        emptyScenes = Prepared("DELETE FROM scene");
        emptyInputs = Prepared("DELETE FROM input");
        addScene = Prepared("INSERT OR REPLACE INTO scene VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,"
                            "?11,?12,?13,?14,?15,?16,?17,?18)");
        addInput = Prepared("INSERT OR REPLACE INTO input VALUES(?1,?2,?3,?4,?5)");
        commit = Prepared("COMMIT");
    }

    void Use();
    void Fill(Bytes& in);

private:
    void CopyTables()
    {
        rows = Opened(":memory:");
        std::string bytes = file->Bytes();
        bytes[18] = bytes[19] = 1; // without a log, whose users would have to share memory
        const auto size = static_cast<sqlite3_int64>(bytes.size());
        auto* const copy = static_cast<unsigned char*>(sqlite3_malloc64(bytes.size()));
        std::memcpy(copy, bytes.data(), bytes.size());
        if (sqlite3_deserialize(rows.get(), "main", copy, size, size,
                                SQLITE_DESERIALIZE_RESIZEABLE | SQLITE_DESERIALIZE_FREEONCLOSE))
            Fail();
    }

    Statement Prepared(const char* sql)
    {
        sqlite3_stmt* made = nullptr;
        if (sqlite3_prepare_v2(rows.get(), sql, -1, &made, nullptr) != SQLITE_OK)
            Fail();
        return {made, sqlite3_finalize};
    }

    void Run(const Statement& statement)
    {
        const int code = sqlite3_step(statement.get());
        sqlite3_reset(statement.get());
        if (code != SQLITE_DONE)
            Fail();
    }

    [[noreturn]] void Fail() const
    {
        std::fprintf(stderr, "%s\n", sqlite3_errmsg(rows.get()));
        std::abort();
    }

    /// A row of values of any kind; kind 0 is the one that the reader hopes for.
    static void Insert(const Statement& statement, int columns, const std::string* hoped, Bytes& in)
    {
        sqlite3_stmt* const made = statement.get();
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
        sqlite3_reset(made);
        sqlite3_clear_bindings(made);
    }

    BatchOptions options;
    ScratchDirectory directory; ///< of the lock
    std::string path;
    std::unique_ptr<StateFile> file;
    Database rows{nullptr, sqlite3_close};
    Statement begin{nullptr, sqlite3_finalize};
    Statement emptyScenes{nullptr, sqlite3_finalize};
    Statement emptyInputs{nullptr, sqlite3_finalize};
    Statement addScene{nullptr, sqlite3_finalize};
    Statement addInput{nullptr, sqlite3_finalize};
    Statement commit{nullptr, sqlite3_finalize};
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
    for (const Statement* statement : {&begin, &emptyScenes, &emptyInputs})
        Run(*statement);
    Insert(addScene, kColumns, scene, in);
    for (int i = 0; i < 3 && !in.IsEmpty(); ++i)
        Insert(addInput, 5, input, in);
    Run(commit);
    sqlite3_int64 size = 0;
    const auto* const bytes = reinterpret_cast<const char*>(
        sqlite3_serialize(rows.get(), "main", &size, SQLITE_SERIALIZE_NOCOPY));
    file->Put({bytes, static_cast<size_t>(size)});
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
