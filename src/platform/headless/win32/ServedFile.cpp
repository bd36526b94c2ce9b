#include "platform/headless/win32/ServedFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

namespace headless {

namespace {

const ServedFile* gServed = nullptr;

struct Place {
    const char* bytes;
    size_t size;
    size_t at = 0;
};

ssize_t ReadOn(void* cookie, char* out, size_t wanted)
{
    Place& place = *static_cast<Place*>(cookie);
    const size_t given = std::min(wanted, place.size - place.at);
    std::memcpy(out, place.bytes + place.at, given);
    place.at += given;
    return static_cast<ssize_t>(given);
}

/// Places behind the end, which files allow, are refused: nobody who reads wants to go there.
int SeekTo(void* cookie, off64_t* offset, int whence)
{
    Place& place = *static_cast<Place*>(cookie);
    const auto size = static_cast<off64_t>(place.size);
    off64_t base = 0;
    if (whence == SEEK_CUR)
        base = static_cast<off64_t>(place.at);
    else if (whence == SEEK_END)
        base = size;
    if (*offset < -base || *offset > size - base) {
        errno = EINVAL;
        return -1;
    }
    *offset += base;
    place.at = static_cast<size_t>(*offset);
    return 0;
}

int CloseIt(void* cookie)
{
    delete static_cast<Place*>(cookie);
    return 0;
}

} // namespace

ServingFile::ServingFile(const ServedFile& served) : file(served)
{
    if (file.size > 0)
        gServed = &file;
}

ServingFile::~ServingFile()
{
    gServed = nullptr;
}

const ServedFile* FileToServe()
{
    return gServed;
}

FILE* StreamOf(const ServedFile& file)
{
    auto* const place = new (std::nothrow) Place{file.bytes, file.size};
    FILE* const stream =
        place ? fopencookie(place, "rb", {ReadOn, nullptr, SeekTo, CloseIt}) : nullptr;
    if (!stream)
        delete place;
    return stream;
}

} // namespace headless
