#pragma once

/// True on the host that uses this project's own rasterizer.
bool IsHeadlessHost();
