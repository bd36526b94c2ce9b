#include "platform/HostStream.h"

FILE* OpenHostStream(const char* path, const char* mode)
{
    return std::fopen(path, mode);
}

size_t ReadStream(FILE* stream, void* bytesOut, size_t size)
{
    return std::fread(bytesOut, 1, size, stream);
}

bool CloseStream(FILE* stream)
{
    return std::fclose(stream) == 0;
}

// No signal interrupts a call here.
void MakeStandardStreamsSteady()
{}
