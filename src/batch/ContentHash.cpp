#include "batch/ContentHash.h"

#include <cerrno>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#define XXH_INLINE_ALL // NOLINT: the library's own switch
#include <xxhash.h>

#include "batch/SteadyCalls.h"

static_assert(sizeof(ContentHash) == sizeof(XXH128_canonical_t));

static ContentHash Canonical(XXH128_hash_t hash)
{
    XXH128_canonical_t bytes;
    XXH128_canonicalFromHash(&bytes, hash);
    ContentHash out{};
    std::memcpy(out.data(), bytes.digest, out.size());
    return out;
}

ContentHash HashOf(std::string_view bytes)
{
    return Canonical(XXH3_128bits(bytes.data(), bytes.size()));
}

/// Bytes from a place of the file; -1 for a failure.
static ssize_t ReadPart(int file, SmallContent& part, off_t at)
{
    return ReadAt(file, part.bytes.data(), part.bytes.size(), at);
}

/// Of so many bytes, or fewer if the file has become shorter. `part` becomes the content if it fits.
static bool HashOfFile(int file, off_t size, SmallContent& part, ContentHash& hashOut)
{
    ssize_t got = ReadPart(file, part, 0);
    if (got == size) {
        part.size = static_cast<size_t>(got);
        hashOut = HashOf({part.bytes.data(), part.size});
        return true;
    }
    alignas(64) static thread_local XXH3_state_t state;
    XXH3_128bits_reset(&state);
    for (off_t at = 0; got > 0;) {
        XXH3_128bits_update(&state, part.bytes.data(), static_cast<size_t>(got));
        at += got;
        got = at < size ? ReadPart(file, part, at) : 0;
    }
    hashOut = Canonical(XXH3_128bits_digest(&state));
    return got >= 0;
}

std::string HashText(const ContentHash& hash)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const uint8_t byte : hash) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

int64_t FileClockNs()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return int64_t{now.tv_sec} * 1000000000 + now.tv_nsec;
}

int64_t DependableTime(const FileStamp& stamp, int64_t readAtNs)
{
    constexpr int64_t kCoarsestStepNs = 20000000;
    return readAtNs - stamp.changedNs < kCoarsestStepNs ? -1 : stamp.changedNs;
}

FileStamp StampOf(const struct stat& info)
{
    FileStamp stamp;
    stamp.sizeBytes = static_cast<uint64_t>(info.st_size);
    stamp.changedNs = int64_t{info.st_mtim.tv_sec} * 1000000000 + info.st_mtim.tv_nsec;
    return stamp;
}

bool StampOfFile(int directory, const char* name, FileStamp& stampOut, SmallContent* contentOut)
{
    static thread_local SmallContent own;
    SmallContent& part = contentOut ? *contentOut : own;
    part.size = 0;
    const Descriptor file = OpenAt(directory, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat info;
    if (!file.IsOpen() || fstat(file.Get(), &info) != 0)
        return false;
    if (!S_ISREG(info.st_mode)) {
        errno = S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
        return false;
    }
    stampOut = StampOf(info);
    return HashOfFile(file.Get(), info.st_size, part, stampOut.hash);
}
