#pragma once

#include <windows.h>

/// The name of a device result, such as "D3DERR_INVALIDCALL"; "Unknown" without one. Never null.
const char* DirectXErrorName(HRESULT result);
