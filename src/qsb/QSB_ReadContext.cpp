#include "qsb/QSB_ReadContext.h"

#include <cstdarg>

#include "base/FormatText.h"
#include "scene/KRE_3dObject.h"

QSB_ReadContext gQsbReadContext;

void QSB_ReadContext::Fail(const File& file, const char* format, ...) const
{
    char text[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(text, sizeof text, format, arguments);
    va_end(arguments);

    const String fileName = file.GetFileName();
    if (object)
        object->Error("File '%s': %s", fileName.c_str(), text);
    KRE_3dObject().Error("File '%s': %s", fileName.c_str(), text);
}

int32_t QSB_ReadContext::ReadCount(File& file, const char* what, int32_t leastBytes) const
{
    int32_t count = 0;
    file.ReadInt32(&count);
    CheckCount(file, what, count, leastBytes);
    return count;
}

void QSB_ReadContext::CheckCount(const File& file, const char* what, int32_t count,
                                 int64_t leastBytes) const
{
    if (count < 0)
        Fail(file, "Invalid number of %s: %i", what, count);
    if (count * leastBytes > file.GetBytesLeft())
        Fail(file, "Invalid number of %s: %i, with %i bytes left", what, count,
             file.GetBytesLeft());
}

void QSB_ReadContext::ReadText(File& file, String* textOut) const
{
    textOut->Clear();
    int32_t length = 0;
    file.ReadInt32(&length);
    if (length < 1)
        return;
    if (length > file.GetBytesLeft())
        Fail(file, "Invalid text length: %i, with %i bytes left", length, file.GetBytesLeft());
    textOut->Allocate(length);
    file.Read(textOut->data.get(), length);
}

void QSB_ReadContext::CheckMemory(const File& file, const void* memory) const
{
    if (!memory)
        Fail(file, "Not enough memory for the scene");
}
