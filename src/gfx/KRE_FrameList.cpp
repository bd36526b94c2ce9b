#include "gfx/KRE_FrameList.h"

#include <algorithm>

std::vector<std::string_view> SplitFrameList(std::string_view text)
{
    std::vector<std::string_view> names;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find_first_of("\r\n"));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        while (!line.empty() && static_cast<unsigned char>(line.front()) <= ' ')
            line.remove_prefix(1);
        if (!line.empty())
            names.push_back(line);
    }
    return names;
}
