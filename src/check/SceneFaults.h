#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "scene/KRE_Mesh.h"

struct SceneFault {
    std::string object; ///< the name of the object, or of the list, that has it
    std::string what;   ///< cut at 511 bytes
};

/// What a look over a scene has found so far. Of some hundred on only the number is kept.
class SceneFaults {
public:
    static constexpr int64_t kMostKept = 200;

    /// A fault of an object and what is wrong with it.
    [[gnu::format(printf, 3, 4)]] void Add(const char* object, const char* format, ...);
    /// Those that are kept, in the order in which they were found.
    const std::vector<SceneFault>& Kept() const { return kept; }
    int64_t Count() const { return count; }
    /// A line "<object>: <what is wrong>" for each that is kept.
    std::string Text() const;

private:
    std::vector<SceneFault> kept;
    int64_t count = 0;
};

/// How much of a mesh is looked over. The vertices and faces of one that shares another's geometry
/// are those of the other.
enum class MeshCheck { kAll, kWithoutGeometry };

/// Geometry, materials, textures and bones of one mesh.
void CheckMesh(KRE_Mesh& mesh, MeshCheck extent, SceneFaults& faults);
void CheckMaterial(const char* owner, const KRE_MaterialInfo& material, SceneFaults& faults);
void CheckTexture(const char* owner, const KRE_Texture& texture, SceneFaults& faults);
