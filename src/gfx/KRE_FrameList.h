#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// Frames in one list. As many pictures as the engine can hold; more are a mistake in a count.
inline constexpr int32_t kMostFrames = 4096;

/// A line of a frame list that holds something.
struct KRE_FrameLine {
    std::string_view text; ///< without the blanks and control bytes at both ends
    int32_t number = 0;    ///< in the file, from 1
};

/// The lines of a frame list; blank ones are left out, but counted. Lines end at CR, LF or both. Any
/// bytes are accepted. The results point into `text`.
std::vector<KRE_FrameLine> SplitFrameList(std::string_view text);

/// A picture and how many frames in a row show it.
struct KRE_FrameRun {
    std::string_view name;
    int32_t count = 1; ///< 1 to kMostFrames + 1, which stands for all that is more
};

/// Takes the last word of a trimmed line for the count, if it is digits behind a name and not 0; a
/// line without one is a name as it stands. A name may end in such a word, so look for the whole line
/// first.
KRE_FrameRun SplitFrameCount(std::string_view line);
