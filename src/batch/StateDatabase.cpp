#include "batch/StateDatabase.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

#include "batch/SteadyCalls.h"
#include "batch/WorkingDirectory.h"

namespace {

constexpr const char* kOtherPlace = "; choose another place with --state";
constexpr int64_t kApplication = 0x51534254; // marks the file as ours
constexpr int64_t kStateVersion = 1;
constexpr off_t kLockedByte = 0x60000000; // the library's own locks are elsewhere
constexpr int kMostWaits = 6000;          // for workers of a killed run
constexpr useconds_t kWaitMicroseconds = 10000;

/// Their locks do not hold between machines, and the library says not to use them.
constexpr int64_t kNetworkFileSystems[] = {0x6969 /* NFS */,
                                           0x517B /* SMB */,
                                           0xFF534D42 /* CIFS */,
                                           0xFE534D42 /* SMB 2 */,
                                           0x01021997 /* 9P */,
                                           0x5346414F /* AFS */,
                                           0x6B414653 /* AFS of the kernel */,
                                           0x73757245 /* Coda */,
                                           0x00C36400 /* Ceph */,
                                           0x0BD00BD0 /* Lustre */,
                                           0x47504653 /* GPFS */,
                                           0x564C /* NCP */};

bool IsOnNetwork(const std::string& path)
{
    const int64_t type = gFileSystemType(SplitPath(path).directory.c_str());
    return std::find(std::begin(kNetworkFileSystems), std::end(kNetworkFileSystems), type) !=
           std::end(kNetworkFileSystems);
}

constexpr const char* kSchema = "CREATE TABLE input("
                                " id INTEGER PRIMARY KEY, path BLOB NOT NULL,"
                                " size INTEGER, time INTEGER, hash BLOB);"
                                "CREATE INDEX input_path ON input(path);"
                                "CREATE TABLE scene("
                                " path BLOB PRIMARY KEY, status INTEGER NOT NULL,"
                                " size INTEGER, time INTEGER, hash BLOB, inputs BLOB,"
                                " target BLOB, target_key BLOB, target_size INTEGER,"
                                " target_time INTEGER, target_hash BLOB,"
                                " frame BLOB, frame_key BLOB, frame_size INTEGER,"
                                " frame_time INTEGER, frame_hash BLOB, thumb BLOB, facts BLOB);";

int64_t TypeOfFileSystem(const char* directory)
{
    struct statfs info;
    return statfs(directory, &info) == 0 ? static_cast<int64_t>(static_cast<uint32_t>(info.f_type))
                                         : 0;
}

} // namespace

int64_t (*gFileSystemType)(const char* directory) = TypeOfFileSystem;

// ---- Statements

/// Throws what the last call failed with.
[[noreturn]] static void ThrowFailure(sqlite3* database)
{
    if (sqlite3_errcode(database) == SQLITE_NOMEM)
        throw std::bad_alloc();
    throw StateError{sqlite3_errmsg(database)};
}

StateStatement::StateStatement(sqlite3* databaseIn, const char* sql) : database(databaseIn)
{
    sqlite3_stmt* made = nullptr;
    Check(sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &made, nullptr));
    statement.reset(made);
}

void StateStatement::Check(int code)
{
    if (code != SQLITE_OK)
        ThrowFailure(database);
}

StateStatement& StateStatement::Put(int place, int64_t number)
{
    Check(sqlite3_bind_int64(statement.get(), place, number));
    return *this;
}

StateStatement& StateStatement::PutBytes(int place, std::string_view bytes)
{
    Check(sqlite3_bind_blob64(statement.get(), place, bytes.data() ? bytes.data() : "",
                              bytes.size(), SQLITE_STATIC));
    return *this;
}

StateStatement& StateStatement::PutNothing(int place)
{
    Check(sqlite3_bind_null(statement.get(), place));
    return *this;
}

bool StateStatement::Step()
{
    const int code = sqlite3_step(statement.get());
    if (code == SQLITE_ROW)
        return true;
    Reset();
    if (code != SQLITE_DONE)
        ThrowFailure(database);
    return false;
}

void StateStatement::Run()
{
    while (Step())
        continue;
}

std::string_view StateStatement::Bytes(int column)
{
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement.get(), column));
    return {bytes, static_cast<size_t>(sqlite3_column_bytes(statement.get(), column))};
}

// ---- The file

StateDatabase::StateDatabase(const std::string& path, bool isDurable)
{
    if (IsOnNetwork(path))
        throw StateError{"the state '" + path +
                         "' is on a network file system: choose another place with --state"};
    Lock(path);
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    database.reset(opened);
    if (code == SQLITE_NOMEM)
        throw std::bad_alloc();
    if (code != SQLITE_OK)
        throw StateError{"the state '" + path + "' cannot be opened: " + sqlite3_errstr(code) +
                         kOtherPlace};
    try {
        CheckContents(isDurable);
    } catch (const StateError& error) {
        throw StateError{"the state '" + path + "' cannot be used: " + error.text +
                         "; remove it, or choose another one with --state"};
    }
}

StateDatabase::~StateDatabase() = default;

/// The lock ends with the process, however it ends.
void StateDatabase::Lock(const std::string& path)
{
    lock = OpenAt(AT_FDCWD, path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (!lock.IsOpen())
        throw StateError{"the state '" + path + "' cannot be opened: " + std::strerror(errno) +
                         kOtherPlace};
    struct stat info;
    if (fstat(lock.Get(), &info) != 0 ||
        !S_ISREG(info.st_mode)) { // a device must not be removed as a cure
        throw StateError{"the state '" + path + "' cannot be opened: it is no file" + kOtherPlace};
    }
    struct flock wanted = {};
    wanted.l_type = F_WRLCK;
    wanted.l_start = kLockedByte;
    wanted.l_len = 1;
    const bool isLocked = fcntl(lock.Get(), F_SETLK, &wanted) == 0;
    if (isLocked && WaitForWorkers())
        return;
    std::string who;
    if (isLocked)
        who = ": workers of one that was killed have not ended yet";
    else if (fcntl(lock.Get(), F_GETLK, &wanted) == 0 && wanted.l_type != F_UNLCK)
        who = ", process " + std::to_string(wanted.l_pid);
    throw StateError{"the state '" + path + "' is in use by another run" + who +
                     "; wait for it, or choose another one with --state"};
}

/// Workers hold the other kind of lock, which all copies of a descriptor share: one of a killed run could
/// still write a target, and its temporary file would not be seen as left behind.
bool StateDatabase::WaitForWorkers() const
{
    for (int i = 0; i < kMostWaits; ++i) {
        if (flock(lock.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
            return true;
        usleep(kWaitMicroseconds);
    }
    return false;
}

void StateDatabase::CheckContents(bool isDurable)
{
    Execute("PRAGMA locking_mode=EXCLUSIVE");
    // A run that is killed before its first commit leaves a file without tables.
    const bool isNew =
        Ask("PRAGMA application_id") == 0 && Ask("SELECT count(*) FROM sqlite_master") == 0;
    if (!isNew) {
        if (Ask("PRAGMA application_id") != kApplication)
            throw StateError{"it is not a state of this program"};
        if (Ask("PRAGMA user_version") > kStateVersion)
            throw StateError{"it was written by a newer program"};
        StateStatement check(Handle(), "PRAGMA quick_check(1)");
        if (!check.Step() || check.Bytes(0) != "ok")
            throw StateError{"it is damaged"};
    }
    Execute("PRAGMA journal_mode=WAL");
    Execute(isDurable ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=NORMAL");
    // Each time the log is brought into the state the run waits for the disk: not below 32 MB.
    Execute("PRAGMA wal_autocheckpoint=8000"); // pages
    Execute("PRAGMA cache_size=-1000");        // KiB
    Execute("BEGIN IMMEDIATE");
    if (isNew) {
        Execute(kSchema);
        Execute(("PRAGMA application_id=" + std::to_string(kApplication)).c_str());
        Execute(("PRAGMA user_version=" + std::to_string(kStateVersion)).c_str());
    }
    Execute("COMMIT");
}

void StateDatabase::Execute(const char* sql)
{
    if (sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        ThrowFailure(database.get());
}

int64_t StateDatabase::Ask(const char* sql)
{
    StateStatement statement(Handle(), sql);
    return statement.Step() ? statement.Number(0) : 0;
}
