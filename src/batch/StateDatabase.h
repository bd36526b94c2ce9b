#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <sqlite3.h>

#include "batch/Descriptor.h"

/// What is wrong with a state file, for people.
struct StateError {
    std::string text;
};

/// A prepared statement. Places count from 1, columns from 0. Failures throw StateError,
/// or std::bad_alloc for memory.
class StateStatement {
public:
    StateStatement(sqlite3* database, const char* sql);

    StateStatement& Put(int place, int64_t number);
    /// The bytes have to live until the statement has run.
    StateStatement& PutBytes(int place, std::string_view bytes);
    StateStatement& PutNothing(int place);
    /// True with a row. Without one the statement is ready for new values.
    bool Step();
    /// For statements without rows.
    void Run();
    void Reset() { sqlite3_reset(statement.get()); }

    int64_t Number(int column) { return sqlite3_column_int64(statement.get(), column); }
    /// Valid until the next step.
    std::string_view Bytes(int column);
    bool IsNothing(int column)
    {
        return sqlite3_column_type(statement.get(), column) == SQLITE_NULL;
    }

private:
    void Check(int code);

    sqlite3* database; ///< not owned
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement{nullptr, sqlite3_finalize};
};

/// The number that the system gives the kind of file system of a directory; 0 if there is none. Tests may
/// claim another one.
extern int64_t (*gFileSystemType)(const char* directory);

/// The file of a state: locked against other runs, of the version that this program knows. What is
/// written stays when it is committed; a process that is killed loses only what came later.
class StateDatabase {
public:
    /// Opens or makes the file. Throws StateError if it is damaged, of a newer program, in use, or on a
    /// file system without dependable locks. Waits for the workers of a run that was killed, which end soon. What a
    /// durable one commits is on the disk; otherwise a loss of power may take the last commits, and no others.
    explicit StateDatabase(const std::string& path, bool isDurable = false);
    ~StateDatabase();
    StateDatabase(const StateDatabase&) = delete;
    StateDatabase& operator=(const StateDatabase&) = delete;

    sqlite3* Handle() const { return database.get(); }
    /// Holds the lock. A process that keeps a copy of it open keeps other runs waiting.
    int LockHandle() const { return lock.Get(); }
    void Execute(const char* sql);
    int64_t Ask(const char* sql);

private:
    void Lock(const std::string& path);
    bool WaitForWorkers() const;
    void CheckContents(bool isDurable);

    Descriptor lock; // declared first: the file must be closed before it is released
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> database{nullptr, sqlite3_close};
};
