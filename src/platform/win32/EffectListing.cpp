#include "platform/EffectListing.h"

bool IsCompiledEffect(std::string_view bytes)
{
    return bytes.starts_with(std::string_view("\x01\x09\xFF\xFE", 4));
}

/// The system's library lists only effects that a device has taken, and not on every Windows.
std::string ListEffect(const std::string&, std::string_view, std::string&)
{
    return "only the Linux program lists compiled effects";
}
