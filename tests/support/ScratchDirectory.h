#pragma once

#include <filesystem>
#include <string>

/// A new empty directory that is the current one during this object's lifetime. The destructor
/// returns to the previous directory and removes everything.
class ScratchDirectory {
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& Path() const { return path; }

    /// Writes a file below this directory, creating its folders, and closes it. Bytes are written
    /// as given.
    void Write(const std::string& name, const std::string& bytes) const;

    /// All bytes of a file below this directory; fails the test if it cannot be read.
    std::string Read(const std::string& name) const;

    bool Has(const std::string& name) const;

private:
    std::filesystem::path path;
    std::filesystem::path before;
};
