#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// XXH3 with 128 bits, in its canonical order of bytes.
using ContentHash = std::array<uint8_t, 16>;

ContentHash HashOf(std::string_view bytes);

/// 32 hexadecimal digits.
std::string HashText(const ContentHash& hash);

/// A file as it was at some time.
struct FileStamp {
    uint64_t sizeBytes = 0;
    int64_t changedNs = 0; ///< time of the last change, since 1970
    ContentHash hash{};

    bool HasSizeAndTimeOf(const FileStamp& other) const
    {
        return sizeBytes == other.sizeBytes && changedNs == other.changedNs;
    }
};

/// The time now, as files have it.
int64_t FileClockNs();

/// The time of a file that was read from `readAtNs` on; -1, which no file has, if it was changed so short before
/// that it may change once more without another time: the clock of file systems is coarse.
int64_t DependableTime(const FileStamp& stamp, int64_t readAtNs);

struct stat;
/// Size and time; the hash stays 0.
FileStamp StampOf(const struct stat& info);

/// The bytes of a file that has few.
struct SmallContent {
    size_t size = 0; ///< 0 for a file that has more, or none
    std::array<char, 65536> bytes;
};

/// The stamp of a file of a directory, with the hash of its content. False, with `errno` set, if it is not a
/// file that can be read. `contentOut`, if not null, becomes the bytes that were hashed, if they fit.
bool StampOfFile(int directory, const char* name, FileStamp& stampOut,
                 SmallContent* contentOut = nullptr);
