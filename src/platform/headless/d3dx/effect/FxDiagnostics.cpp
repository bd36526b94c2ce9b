#include "platform/headless/d3dx/effect/FxDiagnostics.h"

#include <algorithm>
#include <utility>

namespace headless::fx {

namespace {

/// Names and messages that quote a file are cut here.
constexpr size_t kMaxQuotedBytes = 512;

} // namespace

uint32_t FxDiagnostics::AddFile(std::string name)
{
    files.push_back(std::move(name));
    return static_cast<uint32_t>(files.size() - 1);
}

std::string FxDiagnostics::PlaceText(FxPlace place) const
{
    std::string name =
        place.file < files.size() ? files[place.file].substr(0, kMaxQuotedBytes) : "effect";
    std::replace(name.begin(), name.end(), '\0', '?'); // a `#line` may contain them
    return name + '(' + std::to_string(place.line) + ',' + std::to_string(place.column) + ')';
}

void FxDiagnostics::Keep(FxPlace place, FxError error, const std::string& what)
{
    text = PlaceText(place) + ": error X" + std::to_string(static_cast<int>(error)) + ": " +
           what.substr(0, kMaxQuotedBytes);
    // The text is passed on zero-terminated: no byte of a file may cut it short.
    std::replace(text.begin(), text.end(), '\0', '?');
    text += '\n';
}

} // namespace headless::fx
