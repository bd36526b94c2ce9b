#pragma once

#include <cstdio>
#include <functional>
#include <string>

/// False if not all could be written.
using StreamWriter = std::function<bool(std::FILE*)>;

/// Makes a file whole or not at all: `write` fills a temporary one, which then takes the place of the
/// target. False, with `errno` if the system is the reason, if the target is left as it was.
bool WriteWholeFile(const std::string& path, const StreamWriter& write);

/// The same for bytes.
bool WriteWholeFile(const std::string& path, const std::string& bytes);
