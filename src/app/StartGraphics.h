#pragma once

/// Makes the engine object `gGfx`. Raises KRE_Error on failure.
void StartGraphics();

/// Frees the engine. May be called when nothing was started, and twice.
void ShutdownGraphics();
