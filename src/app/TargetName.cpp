#include "app/TargetName.h"

#include <cstring>

String MakeTargetName(const char* fileName)
{
    String target(fileName);
    // The first character never counts as the extension's dot: ".hidden" has no extension.
    const char* dot = std::strrchr(fileName, '.');
    if (dot != nullptr && dot != fileName)
        target.Assign(fileName, static_cast<int32_t>(dot - fileName));
    target.Append(".qsb");
    return target;
}
