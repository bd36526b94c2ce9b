#include "platform/headless/d3dx/effect/FxDiagnostics.h"

#include <algorithm>
#include <utility>

namespace headless::fx {

namespace {

/// Names and messages that quote a file are cut here.
constexpr size_t kMaxQuotedBytes = 512;
/// No more errors are added to a list of this length.
constexpr size_t kMaxListBytes = 8192;

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

std::string FxDiagnostics::LineOf(FxPlace place, FxError error, const std::string& what) const
{
    std::string line = PlaceText(place) + ": error X" + std::to_string(static_cast<int>(error)) +
                       ": " + what.substr(0, kMaxQuotedBytes);
    // The text is passed on zero-terminated: no byte of a file may cut it short.
    std::replace(line.begin(), line.end(), '\0', '?');
    return line + '\n';
}

void FxDiagnostics::Keep(FxPlace place, FxError error, const std::string& what)
{
    text = LineOf(place, error, what);
}

void FxDiagnostics::Add(FxPlace place, FxError error, const std::string& what)
{
    const std::string line = LineOf(place, error, what);
    if (text.size() < kMaxListBytes && text.find(line) == std::string::npos)
        text += line;
}

} // namespace headless::fx
