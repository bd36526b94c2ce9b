#pragma once

// Meshes.

#include "d3d9.h"

struct ID3DXMesh;
