#include "qsb/QSB_Archive.h"

void WriteText(File& file, const String& text)
{
    const int32_t length = text.TextLength();
    file.WriteInt32(length);
    file.Write(text.c_str(), length);
}
