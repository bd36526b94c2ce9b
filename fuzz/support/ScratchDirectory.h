#pragma once

#include <filesystem>
#include <string>

#include <unistd.h>

/// A directory of this process, empty at first and removed at its end.
class ScratchDirectory {
public:
    ScratchDirectory() : directory(Place() / ("qsa2qsb-fuzz-" + std::to_string(getpid())))
    {
        std::filesystem::create_directory(directory);
    }
    ~ScratchDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& Path() const { return directory; }

private:
    /// In memory where the system has such a place.
    static std::filesystem::path Place()
    {
        return std::filesystem::is_directory("/dev/shm") ? "/dev/shm"
                                                         : std::filesystem::temp_directory_path();
    }

    std::filesystem::path directory;
};
