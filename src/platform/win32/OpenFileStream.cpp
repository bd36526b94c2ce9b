#include "platform/OpenFileStream.h"

FILE* OpenFileStream(const char* path, const char* mode, int64_t* sizeOut)
{
    if (sizeOut)
        *sizeOut = -1;
    return std::fopen(path, mode);
}
