#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// What could not be carried from one format to the other: each kind once, with its number of cases,
/// in the order in which the kinds were met.
class NoticeList {
public:
    void Add(const std::string& text, int64_t count = 1);
    /// One line for each kind, "vertex colours are not carried (3)".
    std::vector<std::string> Lines() const;
    const std::vector<std::pair<std::string, int64_t>>& All() const { return notices; }
    bool IsEmpty() const { return notices.empty(); }

private:
    std::vector<std::pair<std::string, int64_t>> notices;
};
