#pragma once

#include <cstdint>
#include <string>

#include <d3d9.h>

namespace headless {

// The log of calls that the host does not model.

/// Writes "UNMODELLED text" to standard error: a file asks for something that the host lacks.
void LogLack(const std::string& text);

/// While one of these exists, refusals are neither logged nor counted: the caller only asks whether
/// a call would be refused. `LastRefusal` starts empty.
class QuietRefusals {
public:
    QuietRefusals();
    ~QuietRefusals();
    QuietRefusals(const QuietRefusals&) = delete;
    QuietRefusals& operator=(const QuietRefusals&) = delete;
};

/// "name(arguments)" of the last unmodelled call or state.
const std::string& LastRefusal();

/// Writes "UNMODELLED name(arguments)" to standard error the first time for each name, counts the
/// call and returns `result`.
HRESULT LogUnmodelled(const char* name, const std::string& arguments, HRESULT result);

inline std::string ArgumentText(const void* value)
{
    return value ? "pointer" : "null";
}

inline std::string ArgumentText(float value)
{
    return std::to_string(value);
}

inline std::string ArgumentText(int64_t value)
{
    return std::to_string(value);
}

template <typename T>
std::string ArgumentText(T value) requires(std::is_integral_v<T> || std::is_enum_v<T>)
{
    return ArgumentText(static_cast<int64_t>(value));
}

/// The usual result of a call that the host does not model: `D3DERR_INVALIDCALL`, logged.
template <typename... Arguments>
HRESULT Unmodelled(const char* name, Arguments... arguments)
{
    std::string text;
    ((text += (text.empty() ? "" : ", ") + ArgumentText(arguments)), ...);
    return LogUnmodelled(name, text, D3DERR_INVALIDCALL);
}

/// UNMODELLED: what RefusingDevice.h lists is logged by name and fails.
struct LoggedRefusal {
    template <typename... Arguments>
    static HRESULT Refuse(const char* name, Arguments... arguments)
    {
        return Unmodelled(name, arguments...);
    }
};

} // namespace headless
