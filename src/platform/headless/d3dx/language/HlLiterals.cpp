#include "platform/headless/d3dx/language/HlLiterals.h"

#include <bit>

namespace headless::hl {

namespace {

bool IsSame(float a, float b)
{
    return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b);
}

} // namespace

/// Without free swizzles several numbers stand at their positions; a single one is spread from anywhere.
std::optional<HlLiterals::Found> HlLiterals::TryPlace(uint32_t number,
                                                      const std::array<float, 4>& values,
                                                      unsigned mask, bool mayAdd)
{
    Register trial = registers[number];
    Found found;
    found.number = number;
    bool isSingle = true;
    for (unsigned i = 0; i < 4; ++i)
        for (unsigned j = 0; j < i; ++j)
            if ((mask >> i & 1) != 0 && (mask >> j & 1) != 0)
                isSingle = isSingle && IsSame(values[i], values[j]);
    const bool isAnywhere = isFree || isSingle;
    for (unsigned i = 0; i < 4; ++i) {
        if ((mask >> i & 1) == 0)
            continue;
        int at = -1;
        for (unsigned c = 0; c < 4 && at < 0; ++c)
            if ((isAnywhere || c == i) && (trial.taken >> c & 1) != 0 &&
                IsSame(trial.values[c], values[i]))
                at = static_cast<int>(c);
        for (unsigned c = 0; c < 4 && at < 0 && mayAdd; ++c)
            if ((isAnywhere || c == i) && (trial.taken >> c & 1) == 0)
                at = static_cast<int>(c);
        if (at < 0)
            return std::nullopt;
        trial.values[static_cast<unsigned>(at)] = values[i];
        trial.taken |= 1u << at;
        found.components[i] = static_cast<unsigned>(at);
    }
    registers[number] = trial;
    return found;
}

HlLiterals::Found HlLiterals::Place(const std::array<float, 4>& values, unsigned mask)
{
    for (const bool mayAdd : {false, true})
        for (uint32_t i = 0; i < registers.size(); ++i)
            if (const std::optional<Found> found = TryPlace(i, values, mask, mayAdd))
                return *found;
    registers.emplace_back();
    return *TryPlace(static_cast<uint32_t>(registers.size() - 1), values, mask, true);
}

uint32_t HlLiterals::Whole(const std::array<float, 4>& values)
{
    for (uint32_t i = 0; i < registers.size(); ++i) {
        bool isIt = registers[i].taken == 15;
        for (unsigned c = 0; c < 4; ++c)
            isIt = isIt && IsSame(registers[i].values[c], values[c]);
        if (isIt)
            return i;
    }
    Register& made = registers.emplace_back();
    made.values = values;
    made.taken = 15;
    return static_cast<uint32_t>(registers.size() - 1);
}

} // namespace headless::hl
