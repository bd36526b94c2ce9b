#pragma once

#include <string>
#include <string_view>

/// Bytes as letters, digits, "+" and "/", filled up with "=".
std::string Base64(std::string_view bytes);

/// False, and nothing of use, for a text that `Base64` does not give.
bool BytesOfBase64(std::string_view text, std::string& bytesOut);
