#pragma once

#include <filesystem>
#include <ios>
#include <string>

/// All bytes of a file; empty if it cannot be opened. Without `std::ios::binary` line ends are read
/// as "\n".
std::string FileContent(const std::filesystem::path& file,
                        std::ios::openmode mode = std::ios::binary);
