#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include <sys/stat.h>

#include "batch/BatchOptions.h"
#include "batch/ContentHash.h"

/// A scene to convert, or a path that was named and is none.
struct SceneEntry {
    std::string path;        ///< as given, or from a directory as given
    uint32_t mirrorFrom = 0; ///< from this byte on the path is kept below another directory
    int32_t errorNumber = 0; ///< why there is no such file; 0 if there is
    uint64_t sizeBytes = 0;  ///< when it was found, as the time
    int64_t changedNs = 0;

    FileStamp Stamp() const { return {sizeBytes, changedNs, {}}; }
};

/// A directory that could not be read.
struct UnreadDirectory {
    std::string path;
    int errorNumber;
};

/// All scenes of a run, in the order in which they are begun: paths as they are given; the files of a
/// directory by name, then what is below it. Hidden entries of directories are left out. A file that is
/// reached twice is taken once, a directory too, so that links in circles end.
class SceneList {
public:
    /// Finds everything. False, with `error`, if the list of paths cannot be read.
    bool Collect(const BatchOptions& options);

    const std::vector<SceneEntry>& Entries() const { return entries; }
    const std::vector<UnreadDirectory>& Unread() const { return unread; }
    /// The directories that were named and those of files that were named, as given; some more than once.
    const std::vector<std::string>& NamedDirectories() const { return named; }
    /// Names an entry by another path of the same file, all of which is kept below another directory.
    void MoveTo(size_t number, const std::string& path);
    std::string error;

private:
    struct FileId {
        dev_t device;
        ino_t inode;
        bool operator==(const FileId&) const = default;
    };
    struct FileIdHash {
        size_t operator()(const FileId& id) const
        {
            return static_cast<size_t>(id.inode * 31 + id.device);
        }
    };

    void AddPath(const std::string& path);
    void NoteNamed(const std::string& directory);
    void AddFile(std::string path, size_t mirrorFrom, const struct stat& info);
    void Walk(const std::string& root);
    void ReadDirectory(const std::string& path, size_t rootLength,
                       std::vector<std::string>& belowOut);
    bool IsWanted(const char* name, const std::string& below) const;
    bool IsExcluded(const char* name, const std::string& below) const;
    bool ReadListFile();
    void SetListError();
    void LeaveOut(const std::string& directory);

    const BatchOptions* options = nullptr; // not owned
    std::vector<SceneEntry> entries;
    std::vector<UnreadDirectory> unread;
    std::vector<std::string> named;
    std::unordered_set<FileId, FileIdHash> files;
    std::unordered_set<FileId, FileIdHash> directories; ///< walked, or targets of this run
    std::unordered_set<FileId, FileIdHash> roots;       ///< named and walked
};
