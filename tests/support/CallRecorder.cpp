#include "tests/support/CallRecorder.h"

#include <algorithm>

namespace {

std::string Padded(const std::string& text)
{
    return " " + text + " ";
}

} // namespace

std::vector<std::string> CallRecorder::LinesOf(std::string_view name) const
{
    std::vector<std::string> found;
    for (const std::string& line : lines) {
        if (line.substr(0, line.find(' ')) == name)
            found.push_back(line);
    }
    return found;
}

std::string CallRecorder::Joined() const
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

void CallRecorder::FailNext(const char* name, HRESULT result, const char* match)
{
    failures.push_back({name, result, match, false});
}

void CallRecorder::FailAlways(const char* name, HRESULT result, const char* match)
{
    failures.push_back({name, result, match, true});
}

size_t CallRecorder::FailuresLeft() const
{
    const auto isSingle = [](const Failure& failure) { return !failure.isLasting; };
    return static_cast<size_t>(std::count_if(failures.begin(), failures.end(), isSingle));
}

CallRecorder::Noted CallRecorder::Note(const char* name,
                                       std::initializer_list<std::string> arguments)
{
    std::string line = name;
    for (const std::string& argument : arguments)
        line += argument.empty() ? "" : " " + argument;
    lines.push_back(line);
    return {lines.size() - 1, TakeFailure(name, line)};
}

void CallRecorder::NoteResult(size_t line, const std::string& result)
{
    if (line < lines.size())
        lines[line] += " -> " + result;
}

std::string CallRecorder::NameOfObject(const char* kind, const void* object)
{
    if (!object)
        return "null";
    const auto known = objectNames.find(object);
    return known != objectNames.end() ? known->second : NameOfNewObject(kind, object);
}

std::string CallRecorder::NameOfNewObject(const char* kind, const void* object)
{
    const std::string name = std::string(kind) + "#" + std::to_string(++objectCounts[kind]);
    objectNames[object] = name;
    return name;
}

std::optional<HRESULT> CallRecorder::TakeFailure(const char* name, const std::string& line)
{
    for (auto failure = failures.begin(); failure != failures.end(); ++failure) {
        const bool hasWords = failure->match.empty() ||
                              Padded(line).find(Padded(failure->match)) != std::string::npos;
        if (failure->name != name || !hasWords)
            continue;
        const HRESULT result = failure->result;
        if (!failure->isLasting)
            failures.erase(failure);
        return result;
    }
    return std::nullopt;
}
