#include "platform/AppendedFile.h"

// An open file can not be removed here, so it is closed after each text.

bool AppendedFile::Open(const char* path, bool startEmpty)
{
    Close();
    stream = std::fopen(path, startEmpty ? "w+t" : "a+t");
    return stream != nullptr;
}

void AppendedFile::Append(const char* text, size_t length)
{
    std::fwrite(text, 1, length, stream);
    Close();
}

void AppendedFile::Close()
{
    if (stream != nullptr)
        std::fclose(stream);
    stream = nullptr;
}
