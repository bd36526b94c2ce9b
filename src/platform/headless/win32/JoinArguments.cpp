#include "platform/headless/win32/JoinArguments.h"

#include <cstring>
#include <sys/stat.h>

namespace headless {

namespace {

bool IsPathRatherThanOption(const char* argument)
{
    if (argument[0] != '/')
        return false;
    struct stat info;
    return std::strchr(argument + 1, '/') != nullptr || stat(argument, &info) == 0;
}

} // namespace

std::string JoinArguments(int count, const char* const* arguments)
{
    std::string line;
    for (int i = 0; i < count; ++i) {
        const char* argument = arguments[i];
        if (argument[0] == '\0')
            continue;
        if (!line.empty())
            line += ' ';
        if (std::strchr(argument, ' ') != nullptr || IsPathRatherThanOption(argument))
            line.append("\"").append(argument).append("\"");
        else
            line += argument;
    }
    return line;
}

} // namespace headless
