#pragma once

#include <optional>
#include <string>
#include <vector>

/// A picture that two names of one call would write, the second replacing the first.
struct PictureTwins {
    std::string picture; ///< below the directory of frames
    std::string first;
    std::string second;
};

/// Walks each name as the converter would with these options, without converting anything, and returns
/// the first picture that a second name would write.
std::optional<PictureTwins> FindPictureTwins(const std::vector<std::string>& options,
                                             const std::vector<std::string>& names);
