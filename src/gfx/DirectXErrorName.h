#pragma once

#include <windows.h>

/// The name of a device result, such as "D3DERR_INVALIDCALL"; "Unknown" for a result without a
/// name. Never null.
const char* DirectXErrorName(HRESULT result);
