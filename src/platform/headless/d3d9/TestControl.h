#pragma once

#include <string>

#include <d3d9.h>

namespace headless {

// For tests only: simulates what happens to a real adapter, and reports live objects.

/// Simulates a lost device, as after a switch to another full-screen program:
/// `TestCooperativeLevel`, `Present` and `Reset` return `D3DERR_DEVICELOST`.
void SimulateDeviceLost(IDirect3DDevice9* device);

/// Makes a lost device restorable: `TestCooperativeLevel` returns `D3DERR_DEVICENOTRESET` and
/// `Reset` works. `Present` still returns `D3DERR_DEVICELOST`.
void SimulateDeviceRestorable(IDirect3DDevice9* device);

/// All objects that the caller holds references to, such as "1 interface, 1 device, 2 textures", or
/// "".
std::string LiveObjectReport();

/// The children alive when a device or interface was last released before them; "" if that has not
/// happened since the last call.
std::string TakeLeakReport();

/// How often the unmodelled call `name` was made.
int UnmodelledCallCount(const char* name);

} // namespace headless
