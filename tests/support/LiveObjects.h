#pragma once

#include <string>

/// The device objects that are still alive, and those that outlived their device since the last
/// call; empty if there are none, or if the host does not keep count.
std::string TakeLiveObjects();
