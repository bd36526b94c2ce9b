#pragma once

#include <d3d9.h>

#include <string>

// How the arguments of a recorded call are written. Null pointers are written as "null".

/// "0" or "1"; other true values as their number.
std::string BoolText(BOOL value);
/// "window" or "null".
std::string WindowText(HWND window);
/// "data" or "null": the data itself is not written.
std::string DataText(const void* data);
/// "[0 0 64 32]": left, top, right, bottom.
std::string RectText(const RECT* rect);
std::string PointText(const POINT* point);
/// "0 rects", "1 rects [0 0 64 32]", ...
std::string ClearRectsText(DWORD count, const D3DRECT* rects);
/// "[1 0.5 0]".
std::string FloatsText(const float* values, UINT count);
std::string IntsText(const int* values, UINT count);
/// "identity" or the 16 numbers row by row.
std::string MatrixText(const D3DMATRIX* matrix);
/// "diffuse[r g b a] ambient[...] specular[...] emissive[...] power=0".
std::string MaterialText(const D3DMATERIAL9* material);
/// The light's kind, then all members by name, including those that the kind does not use.
std::string LightText(const D3DLIGHT9* light);
/// "x y width height minZ maxZ".
std::string ViewportText(const D3DVIEWPORT9* viewport);
/// Entries 0, 1, 128 and 255 of each channel: "red[0 257 32896 65535] green[...] blue[...]".
std::string GammaRampText(const D3DGAMMARAMP* ramp);
/// Each member as "Name=value", in the order of the structure.
std::string PresentParametersText(const D3DPRESENT_PARAMETERS* parameters);
