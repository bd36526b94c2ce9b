#include "platform/OpenFileStream.h"

FILE* OpenFileStream(const char* path, const char* mode)
{
    return std::fopen(path, mode);
}
