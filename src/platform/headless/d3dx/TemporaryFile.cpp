#include "platform/headless/d3dx/TemporaryFile.h"

#include "platform/HostStream.h"

namespace headless {

TemporaryFile::TemporaryFile(const char* path)
    : stream(file.Make(path) ? OpenHostStream(file.Path(), "wbe") : nullptr)
{}

TemporaryFile::~TemporaryFile()
{
    if (stream)
        std::fclose(stream);
}

bool TemporaryFile::Commit()
{
    if (!stream)
        return false;
    const bool written = std::fflush(stream) == 0 && std::ferror(stream) == 0;
    const bool closed = std::fclose(stream) == 0;
    stream = nullptr;
    return written && closed && file.MoveOverTarget();
}

} // namespace headless
