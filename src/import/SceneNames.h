#pragma once

#include <map>
#include <set>
#include <string>

/// Gives out names as scenes can have them: ASCII from blank to ~ without quotes, braces and asterisks, at most
/// 100 bytes, each once whatever its case, and never "Bounds", which has a meaning.
class SceneNames {
public:
    std::string Take(const std::string& wanted, const char* fallback);

private:
    std::set<std::string> taken;        ///< in lower case
    std::map<std::string, int> numbers; ///< the last one given out for a name
};

/// A text on one line between quotes.
std::string HarmlessText(const std::string& text, size_t mostBytes);

/// A material's name. `shader =` in it would name an effect, so the equals sign becomes a colon.
std::string HarmlessMaterialName(const std::string& text);
