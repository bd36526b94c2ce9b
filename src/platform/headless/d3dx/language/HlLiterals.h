#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace headless::hl {

/// Numbers of the text, packed into constant registers.
class HlLiterals {
public:
    struct Register {
        std::array<float, 4> values{};
        unsigned taken = 0; ///< components in use
        uint32_t place = 0xFFFF;
    };
    /// A place for numbers at some positions: the register and the component for each position.
    struct Found {
        uint32_t number = 0;
        unsigned components[4] = {};
    };

    explicit HlLiterals(bool swizzlesFreely) : isFree(swizzlesFreely) {}

    /// `values[i]` is wanted at position i where `mask` has its bit.
    Found Place(const std::array<float, 4>& values, unsigned mask);
    /// A register with just these numbers.
    uint32_t Whole(const std::array<float, 4>& values);

    std::vector<Register> registers;

private:
    std::optional<Found> TryPlace(uint32_t number, const std::array<float, 4>& values,
                                  unsigned mask, bool mayAdd);

    bool isFree;
};

} // namespace headless::hl
