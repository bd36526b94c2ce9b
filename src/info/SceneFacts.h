#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "info/LoadedScene.h"

/// A file named by the scene's materials or its background.
struct NamedFile {
    std::string name; ///< as the scene has it; bytes
    std::string path; ///< where it was found; empty if it was not
    int64_t uses =
        0; ///< map slots, or materials, that name it; 0 for a texture that the load dropped
    int32_t width = 0; ///< pixels; 0 if the picture is not loaded, as for bump maps
    int32_t height = 0;
    int32_t frames = 0; ///< of a list of pictures; 0 for a single one

    bool IsFound() const { return !path.empty(); }
};

/// How many of each kind there are.
struct SceneCounts {
    int64_t meshes = 0;
    int64_t clones = 0; ///< meshes that share another mesh's geometry
    int64_t cameras = 0;
    int64_t helpers = 0; ///< helpers, targets and anything that is not a bone
    int64_t bones = 0;
    int64_t lights = 0;
    int64_t vertices = 0; ///< clones not counted, here and below
    int64_t faces = 0;
    int64_t materials = 0; ///< including those of clones, which have their own
    int64_t transparentMaterials = 0;
    int64_t positionKeys = 0;
    int64_t rotationKeys = 0;
    int64_t scaleKeys = 0;
    int64_t materialKeys = 0; ///< of colours, opacity and texture matrices
    int64_t Keys() const { return positionKeys + rotationKeys + scaleKeys + materialKeys; }
};

/// What can be said about a scene in brief.
struct SceneFacts {
    SceneCounts counts;
    std::vector<NamedFile> textures; ///< by name, each once
    std::vector<NamedFile> effects;  ///< by name, each once

    int64_t MissingTextures() const;
};

SceneFacts FactsOf(LoadedScene& loaded);

/// "mesh", "bone", "helper", "camera", "light", or "object" for an unknown kind.
const char* KindName(const KRE_3dObject& object);
/// "diffuse", "bump", ... for a map slot; "type 9" for an unknown type.
std::string SlotTypeName(int32_t type);
