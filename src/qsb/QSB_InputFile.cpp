#include "qsb/QSB_InputFile.h"

#include <cstdarg>

#include "base/FormatText.h"
#include "scene/KRE_3dObject.h"

void QSB_InputFile::Fail(const char* format, ...) const
{
    char text[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(text, sizeof text, format, arguments);
    va_end(arguments);

    const String path = GetFileName();
    if (object)
        object->Error("File '%s': %s", path.c_str(), text);
    KRE_3dObject().Error("File '%s': %s", path.c_str(), text);
}

int32_t QSB_InputFile::ReadCount(const char* what, int32_t leastBytes)
{
    int32_t count = 0;
    ReadInt32(&count);
    CheckCount(what, count, leastBytes);
    return count;
}

void QSB_InputFile::CheckCount(const char* what, int32_t count, int64_t leastBytes) const
{
    if (count < 0)
        Fail("Invalid number of %s: %i", what, count);
    if (count * leastBytes > GetBytesLeft())
        Fail("Invalid number of %s: %i, with %i bytes left", what, count, GetBytesLeft());
}

void QSB_InputFile::ReadText(String* textOut)
{
    textOut->Clear();
    int32_t length = 0;
    ReadInt32(&length);
    if (length < 1)
        return;
    if (length > GetBytesLeft())
        Fail("Invalid text length: %i, with %i bytes left", length, GetBytesLeft());
    textOut->Allocate(length);
    Read(textOut->data.get(), length);
}

void QSB_InputFile::CheckMemory(const void* memory) const
{
    if (!memory)
        Fail("Not enough memory for the scene");
}

QSB_ObjectInHand::QSB_ObjectInHand(QSB_InputFile& fileIn, KRE_3dObject& object)
    : file(fileIn),
      before(fileIn.object),
      name(object.name)
{
    file.object = &object;
}
