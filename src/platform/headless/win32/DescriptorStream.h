#pragma once

#include <cstdio>

namespace headless {

/// A stream on an open descriptor, which it closes. As `fdopen`, but a signal that interrupts a call does not
/// end what is read or written. Null, with the descriptor still open, if memory is short.
/// Reading through one in large pieces is slow: the library takes it apart into pieces of its buffer.
FILE* DescriptorStream(int descriptor, const char* mode);

/// The same for a file, opened as by `fopen`.
FILE* OpenDescriptorStream(const char* path, const char* mode);

} // namespace headless
