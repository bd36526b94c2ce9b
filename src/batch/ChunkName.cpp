#include "batch/ChunkName.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr size_t kLeastDigits = 3;
constexpr size_t kPlanDigits = 8;

std::string PaddedNumber(uint32_t number, size_t digits)
{
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

bool TakeText(std::string_view& rest, std::string_view text)
{
    if (!rest.starts_with(text))
        return false;
    rest.remove_prefix(text.size());
    return true;
}

bool TakeNumber(std::string_view& rest, uint32_t& numberOut)
{
    const auto read = std::from_chars(rest.data(), rest.data() + rest.size(), numberOut);
    rest.remove_prefix(static_cast<size_t>(read.ptr - rest.data()));
    return read.ec == std::errc();
}

} // namespace

std::string ChunkName::Text() const
{
    const std::string last = PaddedNumber(count, kLeastDigits);
    return "chunk-" + PaddedNumber(number, last.size()) + "-of-" + last + "." + plan;
}

bool ChunkName::Read(std::string_view text, std::string_view& restOut)
{
    restOut = text;
    if (!TakeText(restOut, "chunk-") || !TakeNumber(restOut, number) ||
        !TakeText(restOut, "-of-") || !TakeNumber(restOut, count) || !TakeText(restOut, ".") ||
        restOut.size() < kPlanDigits)
        return false;
    plan = restOut.substr(0, kPlanDigits);
    restOut.remove_prefix(kPlanDigits);
    const bool isHexadecimal = plan.find_first_not_of("0123456789abcdef") == std::string::npos;
    return isHexadecimal && number >= 1 && number <= count && count <= kMostChunks &&
           text.starts_with(Text());
}
