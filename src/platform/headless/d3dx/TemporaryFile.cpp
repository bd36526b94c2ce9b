#include "platform/headless/d3dx/TemporaryFile.h"

#include "platform/OpenFileStream.h"

#include <windows.h>

#include <unistd.h>

namespace headless {

// The process id keeps two programs apart that write the same picture at once.
TemporaryFile::TemporaryFile(const char* path)
    : targetPath(path),
      temporaryPath(targetPath + "." + std::to_string(getpid()) + ".tmp"),
      stream(OpenFileStream(temporaryPath.c_str(), "wb"))
{}

TemporaryFile::~TemporaryFile()
{
    if (!stream)
        return;
    std::fclose(stream);
    DeleteFileA(temporaryPath.c_str());
}

bool TemporaryFile::Commit()
{
    if (!stream)
        return false;
    const bool written = std::fflush(stream) == 0 && std::ferror(stream) == 0;
    const bool closed = std::fclose(stream) == 0;
    stream = nullptr;
    if (written && closed &&
        MoveFileExA(temporaryPath.c_str(), targetPath.c_str(), MOVEFILE_REPLACE_EXISTING))
        return true;
    DeleteFileA(temporaryPath.c_str());
    return false;
}

} // namespace headless
