#pragma once

#include <string>

#include <d3d9.h>

namespace headless {

// For tests only: brings about what a real adapter does by itself, and tells what is alive.

/// The device is lost, as by a switch to another full-screen program: `TestCooperativeLevel`,
/// `Present` and `Reset` give `D3DERR_DEVICELOST`.
void SimulateDeviceLost(IDirect3DDevice9* device);

/// The device can be had again: `TestCooperativeLevel` gives `D3DERR_DEVICENOTRESET` and `Reset`
/// works. `Present` still gives `D3DERR_DEVICELOST`.
void SimulateDeviceRestorable(IDirect3DDevice9* device);

/// All objects with references of the caller's, such as "1 interface, 1 device, 2 textures", or "".
std::string LiveObjectReport();

/// What was alive when a device or interface was last released over living children; "" if that has
/// not happened since the last call.
std::string TakeLeakReport();

/// How often the call `name` was made although the host does not model it.
int UnmodelledCallCount(const char* name);

} // namespace headless
