#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Another scene text: a statement or a block added, removed, repeated or moved, a number, a count, a keyword
/// or a name changed.
std::string MutateSceneText(std::string_view text, uint32_t seed);

/// A text with a block of another one in it.
std::string CrossSceneTexts(std::string_view text, std::string_view other, uint32_t seed);
