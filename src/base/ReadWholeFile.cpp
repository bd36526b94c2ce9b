#include "base/ReadWholeFile.h"

#include <cstdio>
#include <filesystem>

#include "base/FileStream.h"

bool ReadWholeFile(const std::string& path, std::string& bytesOut)
{
    bytesOut.clear();
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) // a pipe might never end
        return false;
    const FileStream stream(std::fopen(path.c_str(), "rb"));
    if (!stream)
        return false;
    char block[65536];
    while (const size_t count = std::fread(block, 1, sizeof block, stream.get()))
        bytesOut.append(block, count);
    const bool isRead = std::ferror(stream.get()) == 0;
    if (!isRead)
        bytesOut.clear();
    return isRead;
}
