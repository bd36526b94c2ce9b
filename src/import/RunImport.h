#pragma once

#include <cstdio>
#include <string>
#include <vector>

constexpr int kImportFailed = 1; ///< a model could not be read

/// The whole program with the arguments after its name; returns the exit status: 0, 1 if a model could not be
/// read, 2 for wrong usage.
int RunImport(const std::vector<std::string>& arguments, FILE* out, FILE* err);
