#pragma once

#include <string>

#include "scene/KRE_Mesh.h"

/// What `CheckScene` has found so far. After some hundred lines the rest is left out.
class SceneFaults {
public:
    /// A line "<object>: <what is wrong>".
    [[gnu::format(printf, 3, 4)]] void Add(const char* object, const char* format, ...);
    const std::string& Text() const { return text; }

private:
    std::string text;
    int lines = 0;
};

/// Geometry, materials, textures and bones of one mesh.
void CheckMesh(KRE_Mesh& mesh, SceneFaults& faults);
void CheckMaterial(const char* owner, const KRE_MaterialInfo& material, SceneFaults& faults);
void CheckTexture(const char* owner, const KRE_Texture& texture, SceneFaults& faults);
