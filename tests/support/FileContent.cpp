#include "tests/support/FileContent.h"

#include <fstream>
#include <sstream>

std::string FileContent(const std::filesystem::path& file, std::ios::openmode mode)
{
    std::ifstream stream(file, std::ios::in | mode);
    std::ostringstream content;
    if (stream)
        content << stream.rdbuf();
    return content.str();
}
