#pragma once

#include <cstdint>

#include <d3dx9.h>

#include "base/ErrorClass.h"

struct QSA_Material;

/// What determines the vertex format of a mesh.
struct QSA_VertexNeeds {
    int32_t weightCount = 0; ///< most weights per vertex; 0, or 2 to 4
    bool hasColors = false;  ///< diffuse and specular
    bool hasTextureFaces = false;
    const QSA_Material* material = nullptr; ///< null for none
};

/// The format as FVF flags. An impossible number of weights is an `Error`.
DWORD ChooseVertexFormat(const QSA_VertexNeeds& needs, ErrorClass& report);
