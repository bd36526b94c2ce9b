#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// The most frames in one list: as many as the engine can hold pictures. More must be a mistake in
/// a count.
inline constexpr int32_t kMostFrames = 4096;

/// A line of a frame list that is not blank.
struct KRE_FrameLine {
    std::string_view text; ///< trimmed of spaces and control bytes
    int32_t number = 0;    ///< line number in the file, from 1
};

/// Splits a frame list into lines; blank ones are skipped, but counted. Lines end at CR, LF or
/// both. Any bytes are accepted. The results point into `text`.
std::vector<KRE_FrameLine> SplitFrameList(std::string_view text);

/// A picture and how many frames in a row show it.
struct KRE_FrameRun {
    std::string_view name;
    int32_t count = 1; ///< 1 to kMostFrames + 1, which means any larger count
};

/// Reads the last word of a trimmed line as the count, if it follows a name, consists of digits and
/// is not 0; otherwise the whole line is the name. A name may itself end in a number, so look for
/// the whole line as a file first.
KRE_FrameRun SplitFrameCount(std::string_view line);
