#include "gltf/NoticeList.h"

void NoticeList::Add(const std::string& text, int64_t count)
{
    if (count <= 0)
        return;
    for (auto& [known, number] : notices) {
        if (known == text) {
            number += count;
            return;
        }
    }
    notices.emplace_back(text, count);
}

std::vector<std::string> NoticeList::Lines() const
{
    std::vector<std::string> lines;
    for (const auto& [text, number] : notices)
        lines.push_back(text + " (" + std::to_string(number) + ")");
    return lines;
}
