#pragma once

#include <d3d9.h>

#include <span>
#include <string>

// Public names of Direct3D 9 values, for the lines of a recording. A value without a name is
// written as a number, so every value has a text.

struct NamedValue {
    DWORD value;
    const char* name;
};

/// The first name that matches `value`, otherwise the number.
std::string NameOf(std::span<const NamedValue> table, DWORD value);

/// The names of all set bits, joined by `|` in the order of the table, followed by bits without a
/// name as one hexadecimal number. "0" if no bit is set.
std::string FlagNames(std::span<const NamedValue> table, DWORD flags);

/// At most six significant digits, without trailing zeros: 1, 0.5, 1e+10. The same on every host.
std::string FloatText(float value);

/// The float with these bits, which is how states hold floats.
std::string FloatBitsText(DWORD bits);

/// 0xAARRGGBB.
std::string ColorText(D3DCOLOR color);

/// 0x and at least one digit, no leading zeros.
std::string HexText(DWORD value);

std::string RenderStateName(D3DRENDERSTATETYPE state);
/// Depends on the state's kind: a name, 0 or 1, a float (fog, points, biases), a colour, a number,
/// or a hexadecimal number (masks).
std::string RenderStateValue(D3DRENDERSTATETYPE state, DWORD value);
std::string TextureStageStateName(D3DTEXTURESTAGESTATETYPE type);
std::string TextureStageStateValue(D3DTEXTURESTAGESTATETYPE type, DWORD value);
std::string SamplerStateName(D3DSAMPLERSTATETYPE type);
std::string SamplerStateValue(D3DSAMPLERSTATETYPE type, DWORD value);

/// `D3DTS_VIEW`, ...; world matrices are `D3DTS_WORLDMATRIX(0)` to `D3DTS_WORLDMATRIX(255)`.
std::string TransformName(D3DTRANSFORMSTATETYPE state);

std::string BackBufferTypeName(D3DBACKBUFFER_TYPE type);
std::string DeviceTypeName(D3DDEVTYPE type);
std::string FilterName(D3DTEXTUREFILTERTYPE filter);
std::string FormatName(D3DFORMAT format);
std::string IntervalName(DWORD interval);
std::string LightTypeName(D3DLIGHTTYPE type);
std::string MultiSampleName(D3DMULTISAMPLE_TYPE type);
std::string PoolName(D3DPOOL pool);
std::string PrimitiveName(D3DPRIMITIVETYPE type);
std::string QueryTypeName(D3DQUERYTYPE type);
std::string ResourceTypeName(D3DRESOURCETYPE type);
std::string StateBlockTypeName(D3DSTATEBLOCKTYPE type);
std::string SwapEffectName(D3DSWAPEFFECT effect);

std::string BehaviorFlags(DWORD flags);
std::string ClearFlags(DWORD flags);
/// The position's kind, then the other parts; the number of texture sets as `D3DFVF_TEX2`. Sizes of
/// sets with other than two coordinates follow as one hexadecimal number.
std::string FvfFlags(DWORD fvf);
std::string PresentFlags(DWORD flags);
std::string UsageFlags(DWORD usage);
