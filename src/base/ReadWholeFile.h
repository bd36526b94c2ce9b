#pragma once

#include <string>

/// Replaces `bytesOut` by the bytes of a file. False if it is no regular file, or cannot be read to its end; then
/// `bytesOut` holds nothing.
bool ReadWholeFile(const std::string& path, std::string& bytesOut);
