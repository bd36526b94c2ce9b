#pragma once

#include "tests/support/D3DNames.h"

/// Writes one value of a state.
using ValueWriter = std::string (*)(DWORD value);

struct StateRow {
    DWORD state;
    const char* name;
    ValueWriter write;
};

inline std::string NumberText(DWORD value)
{
    return std::to_string(value);
}

/// The writer of a state whose values are those of one enumeration.
template <const auto& table>
std::string NameIn(DWORD value)
{
    return NameOf(table, value);
}

/// The row's name, or the number of a state that is not in the table.
std::string NameOfState(std::span<const StateRow> table, DWORD state);

/// As the state's row writes it; a plain number if the state is not in the table.
std::string ValueOfState(std::span<const StateRow> table, DWORD state, DWORD value);
