#pragma once

/// Whether a draw since the last call ended early because its shaders ran too long. Always false on a
/// host that does not limit draws.
bool TakeCutDraw();

/// Whether the rest of a frame was not drawn since the last call because the frame takes too many pixels.
/// Always false on a host that does not limit frames.
bool TakeCutFrame();
