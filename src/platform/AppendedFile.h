#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

/// A file that grows text by text, like a log. A text is with the system before `Append` returns, so
/// a process that is killed loses none.
///
/// The path is followed anew for each text: a file that was removed or moved away is made again, one
/// that was put in its place is continued. A host may keep the file open in between where nobody can
/// tell.
class AppendedFile {
public:
    /// Tells a file from any other, and one that may be opened from the same one that no longer may.
    struct Identity {
        uint64_t device = 0;
        uint64_t number = 0;
        uint32_t mode = 0;
        uint32_t owner = 0;
        uint32_t group = 0;

        bool operator==(const Identity&) const = default;
    };

    constexpr AppendedFile() = default;
    ~AppendedFile() { Close(); }
    AppendedFile(const AppendedFile&) = delete;
    AppendedFile& operator=(const AppendedFile&) = delete;

    /// Opens the file at a path as given in scene files, or makes it; empties it if `startEmpty`.
    /// False if it cannot be opened.
    bool Open(const char* path, bool startEmpty);
    /// Adds a text to the file that `Open` has just opened. Line ends become those of the host's text
    /// files. A medium that takes no more is not reported.
    void Append(const char* text, size_t length);
    /// Leaves nothing open.
    void Close();

private:
    bool IsOpen(const char* path) const;

    // Of a host that keeps the file open.
    [[maybe_unused]] int descriptor = -1;
    [[maybe_unused]] Identity identity;
    // Of a host that closes it after each text.
    [[maybe_unused]] FILE* stream = nullptr;
};
