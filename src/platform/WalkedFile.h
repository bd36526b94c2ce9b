#pragma once

/// The file that is being converted. While this object exists, the host knows which file its
/// messages and pictures belong to; there is only one at a time.
class WalkedFile {
public:
    /// `directory` is the pattern's own as given, with its separator, or empty; `below` is the path
    /// from there, with a `/` after each name. The texts outlive the object.
    WalkedFile(const char* directory, const char* below, const char* name);
    /// If `Converted` was not called, this file ended the run, and the host may report it.
    ~WalkedFile();
    WalkedFile(const WalkedFile&) = delete;
    WalkedFile& operator=(const WalkedFile&) = delete;

    void Converted();
};

/// Tells the host that the current scene is a text without a single keyword: it becomes an empty
/// scene, and probably was never meant to be one.
void ReportNoKeyword();
