#pragma once

#include <string>

/// The bytes of "data:...;base64,...". False for another form or wrong characters.
bool DecodeDataUri(const std::string& uri, std::string& bytesOut);

/// The path that a relative URI means: "%20" as a blank.
std::string UnescapedUri(const std::string& uri);
