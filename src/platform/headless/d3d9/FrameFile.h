#pragma once

#include "platform/headless/d3d9/PixelBuffer.h"

#include <string>

namespace headless {

/// The file name of a frame: the title with `/`, `\` and control bytes replaced by `_` ("frame" if
/// it is empty), and ".png".
std::string FrameFileName(const std::string& windowTitle);

/// The path of a frame inside the frame directory: repeats the directories between the pattern's
/// directory and the scene, so that scenes with equal names get separate pictures. In `below` each
/// directory name ends in `/`.
std::string FramePath(const std::string& below, const std::string& windowTitle);

/// Whether `WriteFrameFile` will write anything.
bool AreFramesKept();

/// Writes the picture, opaque, at `FramePath` with the title of `window`, into the directory named
/// by the environment variable `QSA2QSB_FRAMES`. Creates missing directories; a relative one counts
/// from where the program was started. Does nothing if the variable is not set. A failure is
/// written to standard error and does not stop the program. `ramp`, if not null, maps each colour
/// as a display would.
void WriteFrameFile(const PixelBuffer& picture, HWND window, const D3DGAMMARAMP* ramp);

} // namespace headless
