#pragma once

#include <cstddef>
#include <cstdlib>

/// What `getline` and `getdelim` read into and enlarge.
struct LineBuffer {
    LineBuffer() = default;
    ~LineBuffer() { std::free(text); }
    LineBuffer(const LineBuffer&) = delete;
    LineBuffer& operator=(const LineBuffer&) = delete;

    char* text = nullptr; ///< owned
    size_t room = 0;      ///< bytes
};
