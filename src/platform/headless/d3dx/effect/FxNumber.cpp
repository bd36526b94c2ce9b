#include "platform/headless/d3dx/effect/FxNumber.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <limits>

namespace headless::fx {

namespace {

DWORD ColorByte(float component)
{
    const float scaled = component * 255.0f + 0.5f;
    return scaled >= 255.0f ? 255u : scaled > 0.0f ? static_cast<DWORD>(scaled) : 0u;
}

bool IsOneOf(char c, std::string_view set)
{
    return set.find(c) != std::string_view::npos;
}

bool ParseWhole(std::string_view text, FxNumber& numberOut)
{
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        base = 16;
    } else if (text.size() > 1 && text[0] == '0') {
        base = 8;
    }
    while (text.size() > 1 && IsOneOf(text.back(), "uUlL"))
        text.remove_suffix(1);
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, numberOut.cells[0], base);
    numberOut.shape = {D3DXPT_INT, 1, 1};
    return error == std::errc() && end == last;
}

} // namespace

int32_t FxTruncate(double value)
{
    constexpr double kEnd = 2147483648.0;
    if (!(value > -kEnd)) // NaN too
        return value <= -kEnd ? std::numeric_limits<int32_t>::min() : 0;
    return value >= kEnd ? std::numeric_limits<int32_t>::max() : static_cast<int32_t>(value);
}

FxCell FxCellOfFloat(float value, D3DXPARAMETER_TYPE type)
{
    switch (type) {
    case D3DXPT_BOOL:
        return value != 0.0f ? 1 : 0;
    case D3DXPT_INT:
        return static_cast<FxCell>(FxTruncate(value));
    default:
        return std::bit_cast<FxCell>(value);
    }
}

float FxFloatOfCell(FxCell cell, D3DXPARAMETER_TYPE type)
{
    switch (type) {
    case D3DXPT_BOOL:
        return cell != 0 ? 1.0f : 0.0f;
    case D3DXPT_INT:
        return static_cast<float>(static_cast<int32_t>(cell));
    default:
        return std::bit_cast<float>(cell);
    }
}

FxCell FxConvert(FxCell cell, D3DXPARAMETER_TYPE from, D3DXPARAMETER_TYPE to)
{
    if (from == D3DXPT_FLOAT)
        return to == D3DXPT_FLOAT ? cell : FxCellOfFloat(std::bit_cast<float>(cell), to);
    if (to == D3DXPT_FLOAT)
        return std::bit_cast<FxCell>(FxFloatOfCell(cell, from));
    const bool isTruth = from == D3DXPT_BOOL || to == D3DXPT_BOOL;
    return isTruth ? (cell != 0 ? 1 : 0) : cell;
}

D3DCOLOR FxPackColor(const float* components, UINT count)
{
    const DWORD alpha = count > 3 ? ColorByte(components[3]) : 0;
    return D3DCOLOR_ARGB(alpha, ColorByte(components[0]), ColorByte(components[1]),
                         ColorByte(components[2]));
}

std::array<float, 4> FxUnpackColor(D3DCOLOR color)
{
    const auto part = [color](int shift) {
        return static_cast<float>((color >> shift) & 0xFF) / 255.0f;
    };
    return {part(16), part(8), part(0), part(24)};
}

float FxNumber::Float(UINT index) const
{
    return FxFloatOfCell(cells[shape.IsScalar() ? 0 : index], shape.type);
}

int32_t FxNumber::Int(UINT index) const
{
    return static_cast<int32_t>(
        FxConvert(cells[shape.IsScalar() ? 0 : index], shape.type, D3DXPT_INT));
}

bool FxNumber::Bool(UINT index) const
{
    return FxConvert(cells[shape.IsScalar() ? 0 : index], shape.type, D3DXPT_BOOL) != 0;
}

void FxNumber::SetFloat(UINT index, float value)
{
    cells[index] = std::bit_cast<FxCell>(value);
}

bool FxParseNumber(std::string_view text, FxNumber& numberOut)
{
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    const bool isFloat = !isHex && std::any_of(text.begin(), text.end(),
                                               [](char c) { return IsOneOf(c, ".eEfFhH"); });
    if (!isFloat)
        return ParseWhole(text, numberOut);
    if (IsOneOf(text.back(), "fFhHlL"))
        text.remove_suffix(1);
    float value = 0.0f;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    numberOut.shape = {D3DXPT_FLOAT, 1, 1};
    numberOut.SetFloat(0, value);
    return error == std::errc() && end == last;
}

} // namespace headless::fx
