#pragma once

/// The file that the walk is at. While such an object lives, the host knows which file its messages
/// and pictures belong to; there is one at a time.
class WalkedFile {
public:
    /// `directory` is the pattern's own as it was given, with its separator, or empty; `below` is the
    /// way from there, each name with a `/` behind it. The texts outlive the object.
    WalkedFile(const char* directory, const char* below, const char* name);
    /// A file that was not converted by then has ended the run; the host may say which it was.
    ~WalkedFile();
    WalkedFile(const WalkedFile&) = delete;
    WalkedFile& operator=(const WalkedFile&) = delete;

    void Converted();
};

/// Tells the host that the scene in hand is a text without a single keyword: it will become an empty
/// scene, and most likely it was never meant as one.
void ReportNoKeyword();
