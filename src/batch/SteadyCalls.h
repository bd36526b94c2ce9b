#pragma once

#include <cstddef>

#include <sys/types.h>

#include "batch/Descriptor.h"

// Calls of the system that go on if a signal interrupts them.

/// As `openat`; not open, with `errno`, for a failure.
Descriptor OpenAt(int directory, const char* path, int flags, mode_t mode = 0);

/// As `pread`, but fewer than `size` bytes mean the end of the file. -1, with `errno`, for a failure.
ssize_t ReadAt(int file, void* bytesOut, size_t size, off_t at);
