#pragma once

#include <string>
#include <string_view>

// The only files that a fuzz target sees. A target that is linked with them makes no file on a disk and finds
// none there, whatever names an input has: they stand in for the host's own `OpenFileStream`,
// `ReplacementFile` and `ReadWholeFile`.

/// Adds a file, or gives it other bytes. Names are compared exactly.
void PutMemoryFile(const std::string& name, std::string_view bytes);

/// Null if there is none. Valid until a file is put or written.
const std::string* FindMemoryFile(const std::string& name);

/// The smallest files that scenes may name: the picture "a.ppm", "b.tga" with alpha, the frame list "c.ifl"
/// of both, and the effect "d.fx".
void PutMemoryPictures();
