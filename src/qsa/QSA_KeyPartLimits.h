#pragma once

#include <cstdint>

/// How many keys a rotation key may be split into, and all of a file together. Nothing else that a
/// small text may ask for costs as much.
struct QSA_KeyPartLimits {
    int32_t ofKey = 100000;
    int64_t ofFile = 100000; ///< and more for longer texts
};
