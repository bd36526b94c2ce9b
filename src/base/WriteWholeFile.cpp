#include "base/WriteWholeFile.h"

#include <cerrno>

#include "base/FileStream.h"
#include "platform/HostStream.h"
#include "platform/ReplacementFile.h"

static bool Replace(ReplacementFile& file, const std::string& path, const StreamWriter& write)
{
    if (!file.Make(path.c_str()))
        return false;
    FileStream stream(OpenHostStream(file.Path(), "wb"));
    return stream && write(stream.get()) && std::fclose(stream.release()) == 0 &&
           file.MoveOverTarget();
}

bool WriteWholeFile(const std::string& path, const StreamWriter& write)
{
    bool isWhole = false;
    int reason = 0;
    {
        ReplacementFile file;
        isWhole = Replace(file, path, write);
        reason = errno; // removing the file may change it
    }
    errno = reason;
    return isWhole;
}

bool WriteWholeFile(const std::string& path, const std::string& bytes)
{
    return WriteWholeFile(path, [&](std::FILE* stream) {
        return std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
    });
}
