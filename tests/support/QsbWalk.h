#pragma once

#include <string>

/// The bytes of a QSB file of the current version with zeros in place of what a save rounds to 16
/// bits: the normals and blend values of all vertices. Walks the file by the rules of
/// docs/qsb-format.md; if that does not lead to its end, returns a text that says what is wrong.
std::string WithoutCutNumbers(std::string bytes);
