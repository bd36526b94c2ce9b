#pragma once

/// Whether a draw since the last call ended early because its shaders ran too long. Always false on a
/// host that does not limit draws.
bool TakeCutDraw();
