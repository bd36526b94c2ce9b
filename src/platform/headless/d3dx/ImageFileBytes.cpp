#include "platform/headless/d3dx/ImageFileBytes.h"

#include "platform/HostStream.h"
#include "platform/OpenFileStream.h"

#include <cstdio>
#include <ctime>
#include <new>
#include <sys/stat.h>

namespace headless {

namespace {

constexpr long kMaxFileSize = 1L << 30;

int64_t Nanoseconds(const timespec& time)
{
    return int64_t{time.tv_sec} * 1000000000 + time.tv_nsec;
}

/// Systems take file times from a clock that ticks some hundred times a second; some store whole seconds,
/// even ones only.
bool IsSettled(const timespec& changed)
{
    constexpr int64_t kTick = 20'000'000, kWholeSeconds = 3'000'000'000;
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    const int64_t age = Nanoseconds(now) - Nanoseconds(changed);
    return age > (changed.tv_nsec == 0 ? kWholeSeconds : kTick);
}

} // namespace

HRESULT ImageFileBytes::Open(const char* path)
{
    stream.reset(OpenFileStream(path, "rb"));
    if (!stream || std::fseek(stream.get(), 0, SEEK_END) != 0)
        return D3DXERR_INVALIDDATA;
    const long end = std::ftell(stream.get());
    if (end <= 0 || end > kMaxFileSize || std::fseek(stream.get(), 0, SEEK_SET) != 0)
        return D3DXERR_INVALIDDATA;
    size = static_cast<size_t>(end);
    return D3D_OK;
}

bool ImageFileBytes::Identify(FileIdentity& identityOut) const
{
    struct stat info = {};
    if (fstat(fileno(stream.get()), &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    identityOut = {info.st_dev, info.st_ino, info.st_size, Nanoseconds(info.st_mtim),
                   Nanoseconds(info.st_ctim)};
    return IsSettled(info.st_ctim);
}

HRESULT ImageFileBytes::ReadAll(FileIdentity& afterOut)
{
    bytes.reset(new (std::nothrow) uint8_t[size]);
    const bool isRead = bytes && ReadStream(stream.get(), bytes.get(), size) == size;
    Identify(afterOut);
    stream.reset();
    if (!bytes)
        return E_OUTOFMEMORY;
    return isRead ? D3D_OK : D3DXERR_INVALIDDATA;
}

HRESULT ImageFileBytes::Read(const char* path)
{
    FileIdentity after;
    const HRESULT result = Open(path);
    return FAILED(result) ? result : ReadAll(after);
}

} // namespace headless
