#pragma once

#include <optional>
#include <string>
#include <vector>

/// A picture that two names of one call would give, the second in the place of the first.
struct PictureTwins {
    std::string picture; ///< below the directory of frames
    std::string first;
    std::string second;
};

/// Walks each name as the converter would under these options, without converting anything, and gives
/// the first picture that comes up for a second name.
std::optional<PictureTwins> FindPictureTwins(const std::vector<std::string>& options,
                                             const std::vector<std::string>& names);
