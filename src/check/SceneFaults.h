#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "scene/KRE_Mesh.h"

struct SceneFault {
    std::string object; ///< name of the object or list that has the fault
    std::string what;   ///< truncated to 511 bytes
};

/// The faults found in a scene so far; beyond `kMostKept` they are only counted.
class SceneFaults {
public:
    static constexpr int64_t kMostKept = 200;

    /// Adds a fault of an object, with what is wrong with it.
    [[gnu::format(printf, 3, 4)]] void Add(const char* object, const char* format, ...);
    /// The faults that are kept, in the order in which they were found.
    const std::vector<SceneFault>& Kept() const { return kept; }
    int64_t Count() const { return count; }
    /// One line "<object>: <what is wrong>" for each kept fault.
    std::string Text() const;

private:
    std::vector<SceneFault> kept;
    int64_t count = 0;
};

/// How much of a mesh is checked. A mesh that shares another's geometry has that one's vertices and
/// faces.
enum class MeshCheck { kAll, kWithoutGeometry };

/// Geometry, materials, textures and bones of one mesh.
void CheckMesh(KRE_Mesh& mesh, MeshCheck extent, SceneFaults& faults);
void CheckMaterial(const char* owner, const KRE_MaterialInfo& material, SceneFaults& faults);
void CheckTexture(const char* owner, const KRE_Texture& texture, SceneFaults& faults);
