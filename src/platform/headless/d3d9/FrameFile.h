#pragma once

#include "platform/headless/d3d9/PixelBuffer.h"

#include <string>

namespace headless {

/// The file name of a frame: the title with `/`, `\` and control bytes turned into `_`, "frame" for an
/// empty title, and ".png".
std::string FrameFileName(const std::string& windowTitle);

/// Where a frame is kept below the directory of frames: in the directories in which its scene lies
/// below that of the pattern, so that scenes of equal names have a picture each. In `below` each name
/// has a `/` behind it.
std::string FramePath(const std::string& below, const std::string& windowTitle);

/// Writes the picture, opaque, into the directory that the environment variable `QSA2QSB_FRAMES`
/// names, at `FramePath` with the title of `window`. A directory that is missing is made; a relative
/// one is taken from where the program was started. Without the variable nothing happens. A failure
/// goes to standard error: a frame that cannot be kept does not stop the program. With a `ramp` each
/// colour is looked up there, as a display would.
void WriteFrameFile(const PixelBuffer& picture, HWND window, const D3DGAMMARAMP* ramp);

} // namespace headless
