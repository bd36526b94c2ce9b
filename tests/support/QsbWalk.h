#pragma once

#include <string>

/// The bytes of a QSB file of the current version with zeros for what a save cuts to 16 bits: the
/// normals and blend values of all vertices. Walks the file by the rules of docs/qsb-format.md; a text
/// that says what is wrong if they do not lead to its end.
std::string WithoutCutNumbers(std::string bytes);
