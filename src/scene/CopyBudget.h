#pragma once

#include <algorithm>
#include <cstdint>

#include "base/ErrorClass.h"
#include "scene/KRE_Mesh.h"

/// Memory for what a file says once and its meshes copy: materials with their keys, the bones of a
/// clone's source. Without a limit a file of 1 MiB could ask for many gigabytes.
class CopyBudget {
public:
    explicit CopyBudget(int64_t fileBytes)
        : most(std::max(kLeast, (fileBytes - kFree) * kBytesForEach)),
          left(most)
    {}

    /// Counts bytes that `mesh` copies. If all of the file are too many, that is an `Error` of `report`.
    void Take(int64_t bytes, const KRE_Mesh& mesh, ErrorClassSimple& report)
    {
        left -= bytes;
        if (left < 0)
            report.Error("Mesh '%s': more than %lli bytes of materials and bones are copied",
                         mesh.name.c_str(), static_cast<long long>(most));
    }

private:
    // Some 15,000 plain materials in a small file, and from 1 MiB on 64 bytes for each byte: a clone
    // in the text takes some 500 bytes, and may copy 15 materials or 60 bones for them.
    static constexpr int64_t kLeast = int64_t{32} << 20;
    static constexpr int64_t kFree = int64_t{1} << 19;
    static constexpr int64_t kBytesForEach = 64;

    int64_t most;
    int64_t left;
};

/// What a material and its texture take in a mesh, and what their keys and frames take on top of it.
inline constexpr int64_t kMaterialBytes = sizeof(KRE_MaterialInfo) + sizeof(KRE_Texture);
int64_t AnimationBytes(const KRE_MaterialInfo& material);
int64_t AnimationBytes(const KRE_Texture& texture);
