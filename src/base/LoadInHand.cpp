#include "base/LoadInHand.h"

#include <cstring>

#include "base/FormatText.h"
#include "base/String.h"

LoadInHand gLoadInHand;

bool DescribeLoad(const char* message, char* textOut, size_t size)
{
    const char* file = gLoadInHand.file;
    if (!file || std::strstr(message, file))
        return false;
    if (gLoadInHand.object && !gLoadInHand.object->IsEmpty())
        FormatText(textOut, size, "File '%s', object '%s': cannot be loaded, the error follows",
                   file, gLoadInHand.object->c_str());
    else
        FormatText(textOut, size, "File '%s': cannot be loaded, the error follows", file);
    return true;
}
