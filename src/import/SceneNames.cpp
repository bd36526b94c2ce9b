#include "import/SceneNames.h"

#include <algorithm>

#include "base/Ascii.h"

namespace {

constexpr size_t kMostNameBytes = 100;

std::string Lower(std::string text)
{
    for (char& byte : text)
        byte = ToLowerAscii(byte);
    return text;
}

} // namespace

std::string HarmlessText(const std::string& text, size_t mostBytes)
{
    std::string harmless;
    for (const char byte : text) {
        const auto code = static_cast<unsigned char>(byte);
        if (code >= 0x80 && code < 0xC0)
            continue; // the rest of a character that begins before it
        const bool isPlain =
            code >= ' ' && code <= '~' && byte != '"' && byte != '{' && byte != '}' && byte != '*';
        harmless += isPlain ? byte : '_';
    }
    harmless.resize(std::min(harmless.size(), mostBytes));
    while (!harmless.empty() && harmless.back() == ' ')
        harmless.pop_back();
    harmless.erase(0, harmless.find_first_not_of(' '));
    return harmless;
}

std::string HarmlessMaterialName(const std::string& text)
{
    std::string name = HarmlessText(text, kMostNameBytes);
    std::replace(name.begin(), name.end(), '=', ':');
    return name;
}

std::string SceneNames::Take(const std::string& wanted, const char* fallback)
{
    std::string name = HarmlessText(wanted, kMostNameBytes);
    if (name.empty())
        name = fallback;
    if (Lower(name) == "bounds")
        name += "_";
    std::string free = name;
    int& number = numbers[Lower(name)]; // files can ask for one name very often
    while (!taken.insert(Lower(free)).second)
        free = name + " " + std::to_string(++number + 1);
    return free;
}
