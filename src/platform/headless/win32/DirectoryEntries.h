#pragma once

#include <functional>
#include <string>

struct dirent;

namespace headless {

/// Calls `visit` for each entry of a directory; an empty path is the current directory. False, with `errno`
/// set, if it cannot be opened or read to its end. Allocates nothing; neither does the `std::function` of a lambda
/// that captures one reference.
bool VisitEntries(const std::string& directory, const std::function<void(const dirent&)>& visit);

/// The same for a descriptor, which it closes; -1, with `errno`, for one that could not be opened.
bool VisitEntries(int descriptor, const std::function<void(const dirent&)>& visit);

} // namespace headless
