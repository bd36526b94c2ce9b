#pragma once

#include "base/String.h"

#include <windows.h>

/// The entries of the current directory that fit a pattern, one after the other. Begins at the first
/// one; a pattern without matches begins at its end.
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

/// Tells directories apart however they are named. All zero if the directory cannot be asked.
struct DirectoryIdentity {
    DWORD volume = 0;
    DWORD indexHigh = 0;
    DWORD indexLow = 0;
    String path; // without links; only where the numbers say nothing

    /// Some file systems have no numbers and report 0 or all ones for every directory.
    bool IsNumbered() const;
    /// By the numbers where both have them, otherwise by the paths. Two directories that could not
    /// be asked are not the same.
    bool operator==(const DirectoryIdentity& other) const;
};

DirectoryIdentity IdentifyDirectory(const char* path);

/// Path of the current directory, whatever its length; empty if it has none any more.
String CurrentDirectory();
