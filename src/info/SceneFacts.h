#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "info/LoadedScene.h"

/// A file that the scene's materials or its background name.
struct NamedFile {
    std::string name; ///< as the scene has it; bytes
    std::string path; ///< where it was found; empty if it was not
    int64_t uses =
        0; ///< map slots, or materials, that name it; 0 for a texture that the load dropped
    int32_t width = 0; ///< pixels; 0 for a picture that is not loaded, as those of bump maps
    int32_t height = 0;
    int32_t frames = 0; ///< of a list of pictures; 0 for a single one

    bool IsFound() const { return !path.empty(); }
};

/// How many there are of what.
struct SceneCounts {
    int64_t meshes = 0;
    int64_t clones = 0; ///< meshes that share another one's geometry
    int64_t cameras = 0;
    int64_t helpers = 0; ///< and targets, and whatever is no bone
    int64_t bones = 0;
    int64_t lights = 0;
    int64_t vertices = 0; ///< clones left out, here and below
    int64_t faces = 0;
    int64_t materials = 0; ///< those of clones included: they have their own
    int64_t transparentMaterials = 0;
    int64_t positionKeys = 0;
    int64_t rotationKeys = 0;
    int64_t scaleKeys = 0;
    int64_t materialKeys = 0; ///< of colours, opacity and texture matrices
    int64_t Keys() const { return positionKeys + rotationKeys + scaleKeys + materialKeys; }
};

/// What can be told of a scene in short.
struct SceneFacts {
    SceneCounts counts;
    std::vector<NamedFile> textures; ///< by name, each once
    std::vector<NamedFile> effects;  ///< by name, each once

    int64_t MissingTextures() const;
};

SceneFacts FactsOf(LoadedScene& loaded);

/// "mesh", "bone", "helper", "camera", "light", or "object" for a number that means nothing.
const char* KindName(const KRE_3dObject& object);
/// "diffuse", "bump", ... of a map slot; "type 9" for a number that means nothing.
std::string SlotTypeName(int32_t type);
