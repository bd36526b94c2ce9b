#pragma once

/// True on the host whose rasterizer is this project's own.
bool IsHeadlessHost();
