#include "app/ProcessFile.h"

#include "app/TargetName.h"
#include "base/Paths.h"

void ProcessFile(const char* fileName, int overwrite)
{
    const String targetName = MakeTargetName(fileName);
    if (!overwrite && FileExists(targetName.c_str()))
        return;
}
