#pragma once

#include <cstdio>
#include <string>
#include <vector>

constexpr int kExportTrouble = 2;

/// The whole program with the arguments after its name; returns the exit status, 0 or 2.
int RunExport(const std::vector<std::string>& arguments, FILE* out, FILE* err);
