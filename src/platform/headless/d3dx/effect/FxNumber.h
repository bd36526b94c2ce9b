#pragma once

#include <d3dx9.h>

#include <array>
#include <cstdint>
#include <string_view>

namespace headless::fx {

// Numbers of effects. Each is stored in a four-byte cell: a BOOL of 0 or 1, a 32-bit integer, or
// the bits of a float.

using FxCell = uint32_t;

/// A type and dimensions: 1 by 1 for a scalar, 1 by n for a vector, else a matrix.
struct FxShape {
    D3DXPARAMETER_TYPE type = D3DXPT_FLOAT;
    UINT rows = 1;
    UINT columns = 1;

    UINT Count() const { return rows * columns; }
    bool IsScalar() const { return Count() == 1; }
    bool HasSameForm(const FxShape& other) const
    {
        return rows == other.rows && columns == other.columns;
    }
};

/// A value of up to 4 by 4 cells, row by row.
struct FxNumber {
    FxShape shape;
    std::array<FxCell, 16> cells = {};

    /// The cell converted. A scalar gives its value for every index.
    float Float(UINT index) const;
    int32_t Int(UINT index) const;
    bool Bool(UINT index) const;
    void SetFloat(UINT index, float value);
    void SetInt(UINT index, int32_t value) { cells[index] = static_cast<FxCell>(value); }
};

/// Truncates and saturates; NaN becomes 0, on every processor.
int32_t FxTruncate(double value);
/// Float to integer truncates as above; as a truth, anything but 0 is true.
FxCell FxConvert(FxCell cell, D3DXPARAMETER_TYPE from, D3DXPARAMETER_TYPE to);
/// Converts a value to a cell of the type.
FxCell FxCellOfFloat(float value, D3DXPARAMETER_TYPE type);
float FxFloatOfCell(FxCell cell, D3DXPARAMETER_TYPE type);

/// Packs 3 or 4 floats of 0..1 as a Direct3D colour; with three, alpha is 0.
D3DCOLOR FxPackColor(const float* components, UINT count);
/// Red, green, blue, alpha, each 0..1.
std::array<float, 4> FxUnpackColor(D3DCOLOR color);

/// Parses a number literal: integers in base 8, 10 or 16 with suffixes U and L, floats with F, H or
/// L. False for anything else and for values out of range.
bool FxParseNumber(std::string_view text, FxNumber& numberOut);

} // namespace headless::fx
