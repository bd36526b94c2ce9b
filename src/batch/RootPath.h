#pragma once

#include <optional>
#include <string>

/// The directory that the paths of chunks and of their journals begin in. Each machine may have it at
/// another place.
class RootPath {
public:
    /// False, with `errno` set, if there is no such directory.
    bool Open(const std::string& directory);
    /// Makes it the current directory. False, with `errno` set, if it cannot be entered.
    bool Enter() const;

    /// A path of the directory that was current in `Open`, as it is below the root; nothing if it is
    /// elsewhere. What is there need not exist.
    std::optional<std::string> Below(const std::string& path) const;
    /// The same; the absolute path if it is elsewhere. An empty path stays empty.
    std::string FromRoot(const std::string& path) const;
    /// A path of the directory that was current in `Open`.
    std::string Absolute(const std::string& path) const;
    /// Without links.
    const std::string& Place() const { return place; }

private:
    std::string started; ///< current directory in `Open`
    std::string named;   ///< absolute, as it was named
    std::string place;
};
