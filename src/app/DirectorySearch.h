#pragma once

#include "base/String.h"

#include <windows.h>

/// The entries of the current directory that match a pattern, one after the other. Begins at the first
/// one; a pattern without matches begins at the end.
class DirectorySearch {
public:
    explicit DirectorySearch(const char* pattern);
    ~DirectorySearch();
    DirectorySearch(const DirectorySearch&) = delete;
    DirectorySearch& operator=(const DirectorySearch&) = delete;

    bool IsAtEnd() const { return search == INVALID_HANDLE_VALUE; }
    void Next();
    const char* Name() const { return entry.cFileName; }
    DWORD Attributes() const { return entry.dwFileAttributes; }

    /// A directory other than "." and "..".
    bool IsSubdirectory() const;

private:
    HANDLE search; // owned
    WIN32_FIND_DATAA entry;
};

/// Identifies a directory, whatever its name. All zero if the system does not give its identity.
struct DirectoryIdentity {
    DWORD volume = 0;
    DWORD indexHigh = 0;
    DWORD indexLow = 0;
    String path; // without links; only if the numbers identify nothing

    /// Some file systems have no numbers and report 0 or all ones for every directory.
    bool IsNumbered() const;
    /// By the numbers if both have them, otherwise by the paths. Two directories without identity are not
    /// the same.
    bool operator==(const DirectoryIdentity& other) const;
};

DirectoryIdentity IdentifyDirectory(const char* path);

/// Path of the current directory, whatever its length; empty if it no longer exists.
String CurrentDirectory();
