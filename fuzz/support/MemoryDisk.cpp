#include "fuzz/support/MemoryDisk.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <utility>

#include "base/ReadWholeFile.h"
#include "platform/OpenFileStream.h"
#include "platform/ReplacementFile.h"
#include "platform/headless/win32/FileLookups.h"
#include "platform/headless/win32/ServedFile.h"

namespace {

std::map<std::string, std::string, std::less<>>& Disk()
{
    static std::map<std::string, std::string, std::less<>> disk;
    return disk;
}

ssize_t WriteOn(void* cookie, const char* bytes, size_t size)
{
    static_cast<std::string*>(cookie)->append(bytes, size);
    return static_cast<ssize_t>(size);
}

/// The stream is written in large pieces, as that of the host.
FILE* WriteTo(std::string& bytes)
{
    bytes.clear();
    FILE* const stream = fopencookie(&bytes, "wb", {nullptr, WriteOn, nullptr, nullptr});
    if (stream)
        std::setvbuf(stream, nullptr, _IONBF, 0);
    return stream;
}

FILE* ReadFrom(const char* path, int64_t* sizeOut)
{
    const auto found = Disk().find(std::string_view(path));
    if (found == Disk().end()) {
        errno = ENOENT;
        return nullptr;
    }
    if (sizeOut)
        *sizeOut = static_cast<int64_t>(found->second.size());
    return headless::StreamOf({path, found->second.data(), found->second.size()});
}

/// One pixel of 32 bits, half transparent.
constexpr std::string_view kTgaWithAlpha("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x20\x08\x10\x20\x30\x80",
                                         22);

/// A file that no name leads to until it is complete.
std::string TemporaryNameOf(const std::string& target)
{
    return target + ".new";
}

} // namespace

void (*headless::gLookupSink)(const char* path, const struct stat* found) = nullptr;
bool headless::gRegularFilesOnly = false;

bool headless::IsReadableFile(const char* hostPath)
{
    return FindMemoryFile(hostPath) != nullptr;
}

void PutMemoryFile(const std::string& name, std::string_view bytes)
{
    Disk()[name].assign(bytes);
}

const std::string* FindMemoryFile(const std::string& name)
{
    const auto found = Disk().find(name);
    return found == Disk().end() ? nullptr : &found->second;
}

void PutMemoryPictures()
{
    PutMemoryFile("a.ppm", "P6 1 1 255\n123");
    PutMemoryFile("b.tga", kTgaWithAlpha);
    PutMemoryFile("c.ifl", "a.ppm\nb.tga 2\n");
    PutMemoryFile("d.fx", "technique t { pass p { CullMode = 1; } }");
}

// ---- What takes the place of the host's

FILE* OpenFileStream(const char* path, const char* mode, int64_t* sizeOut)
{
    if (sizeOut)
        *sizeOut = -1;
    return mode[0] == 'r' ? ReadFrom(path, sizeOut) : WriteTo(Disk()[path]);
}

bool ReadWholeFile(const std::string& path, std::string& bytesOut)
{
    const std::string* const found = FindMemoryFile(path);
    bytesOut = found ? *found : "";
    return found != nullptr;
}

ReplacementFile::~ReplacementFile()
{
    if (!path.empty())
        Disk().erase(path);
}

bool ReplacementFile::IsTargetThere(const char* targetPath)
{
    return Disk().contains(std::string_view(targetPath));
}

bool ReplacementFile::Make(const char* targetPath)
{
    target = targetPath;
    path = TemporaryNameOf(target);
    Disk()[path].clear();
    return true;
}

bool ReplacementFile::MoveOverTarget()
{
    Disk()[target] = std::move(Disk()[path]);
    Disk().erase(path);
    path.clear();
    return true;
}
