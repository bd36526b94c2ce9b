#pragma once

#include <string_view>
#include <vector>

/// The lines of a frame list, each without the blanks and control bytes at its start; lines with
/// nothing else are left out. Lines end at CR, LF or both. Any bytes are accepted. The results
/// point into `text`.
std::vector<std::string_view> SplitFrameList(std::string_view text);
