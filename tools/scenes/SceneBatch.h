#pragma once

#include <filesystem>
#include <string>
#include <vector>

inline constexpr unsigned kSceneBatches = 20;
inline constexpr unsigned kScenesPerBatch = 25;

/// Writes the scenes of a batch, with the pictures and effects that they use, into `directory`, which is made.
/// `examples` is the tree's folder. The last scene of three batches of four ends the run. Returns the
/// arguments of the converter, to be called in `directory`. The same batch is the same on every machine. Throws
/// std::exception if a file cannot be written.
std::vector<std::string> WriteSceneBatch(unsigned batch, const std::filesystem::path& examples,
                                         const std::filesystem::path& directory);
