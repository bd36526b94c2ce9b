#include "base/ReadWholeFile.h"

#include <cstdio>
#include <filesystem>

#include "base/FileStream.h"
#include "platform/HostStream.h"

bool ReadWholeFile(const std::string& path, std::string& bytesOut)
{
    bytesOut.clear();
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) // a pipe might never end
        return false;
    const FileStream stream(OpenHostStream(path.c_str(), "rb"));
    if (!stream)
        return false;
    char block[65536];
    while (const size_t count = ReadStream(stream.get(), block, sizeof block))
        bytesOut.append(block, count);
    const bool isRead = std::ferror(stream.get()) == 0;
    if (!isRead)
        bytesOut.clear();
    return isRead;
}
