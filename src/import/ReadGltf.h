#pragma once

#include <string>

#include "import/Model.h"

class NoticeList;

/// Reads a glTF 2.0 file. `animation` is a number or a name; empty for the first one. What the scene format
/// cannot carry is added to `notices`. Throws ModelFault.
Model ReadGltf(const std::string& path, const std::string& animation, NoticeList& notices);
