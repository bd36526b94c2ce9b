#pragma once

#include <string>

#include "import/Model.h"

class NoticeList;

/// Reads a model of any format that the general library knows (OBJ, FBX, DAE, 3DS, PLY, MD3, MD5, BVH and
/// more). The library may crash or run wild on damaged files, so call it in a child process. Throws ModelFault.
Model ReadAssimp(const std::string& path, const std::string& animation, NoticeList& notices);

/// Whether the library knows files with this name.
bool KnowsAssimp(const std::string& path);
