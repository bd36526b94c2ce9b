#include "tests/support/TreePaths.h"

std::string SourcePath(const std::string& name)
{
    return QSA_SOURCE_DIR "/" + name;
}

std::string BuildPath(const std::string& name)
{
    return QSA_BUILD_DIR "/" + name;
}

const char* ProgramPath()
{
    return QSA_PROGRAM_FILE;
}

const char* InfoProgramPath()
{
    return QSA_INFO_PROGRAM_FILE;
}
