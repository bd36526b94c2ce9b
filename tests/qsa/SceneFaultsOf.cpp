#include "tests/qsa/SceneFaultsOf.h"

#include <cmath>
#include <sstream>

#include "check/CheckScene.h"

/// What a bad file is allowed to contain.
static constexpr const char* kFreeOfBadInput[] = {
    " rotation has the length ",     // an axis of (0, 0, 0)
    " rotation key has the length ", // the same
    " is the object itself",         // a parent or target
    // Of two meshes of the same name the first in the file is the source, but the drawing order may
    // have put the other before it; and the bounds object leaves the scene after it was cloned.
    ": a clone with another geometry than ",
    " to be a clone of",
};

/// Replaces line ends in a name: names from files may contain any byte, but a fault is one line.
static void Flatten(const String& text)
{
    for (char* c = text.data.get(); c && *c; ++c)
        *c = *c == '\n' ? ' ' : *c;
}

template <class List>
static void FlattenNames(List& list)
{
    for (const auto* object : list) {
        Flatten(object->name);
        Flatten(object->parentName);
    }
}

/// Whether a format has sizes for coordinate sets that it does not have, as formats of materials
/// with a bump map may: the host's library drops such bits.
static bool HasSizesOfUnusedSets(const KRE_Mesh& mesh)
{
    const int32_t firstUnused = 16 + 2 * mesh.textureCount;
    return firstUnused < 32 && (mesh.fvf >> firstUnused) != 0;
}

/// Whether a vertex of a mesh is nowhere, as a text may say with "nan": no bounds hold it.
static bool HasVertexNowhere(KRE_Mesh& mesh)
{
    if (!mesh.mesh.Get())
        return false;
    bool isFound = false;
    mesh.LockAll(D3DLOCK_READONLY);
    for (int32_t i = 0; i < mesh.vertexCount; ++i) {
        const D3DXVECTOR3 place = *mesh.Position(i);
        isFound = isFound || !std::isfinite(place.x) || !std::isfinite(place.y) ||
                  !std::isfinite(place.z);
    }
    mesh.UnlockAll();
    return isFound;
}

std::string FaultsOf(KRE_3dScene& scene, bool isBadInput)
{
    bool hasUnusedSizes = false;
    bool hasVertexNowhere = false;
    for (KRE_Mesh* mesh : scene.meshes) {
        hasUnusedSizes = hasUnusedSizes || HasSizesOfUnusedSets(*mesh);
        hasVertexNowhere = hasVertexNowhere || (isBadInput && HasVertexNowhere(*mesh));
    }
    FlattenNames(scene.meshes);
    FlattenNames(scene.objects);
    FlattenNames(scene.cameras);
    FlattenNames(scene.lights);
    for (const KRE_Mesh* mesh : scene.meshes)
        Flatten(mesh->cloneSource);
    bool hasClones = false;
    for (const KRE_Mesh* mesh : scene.meshes)
        hasClones = hasClones || !mesh->cloneSource.IsEmpty();
    std::string faults;
    std::istringstream lines(CheckScene(scene));
    for (std::string line; std::getline(lines, line);) {
        const bool isCloneAttribute =
            hasClones && line.find(" has the attribute ") != std::string::npos;
        bool isFree = false;
        for (const char* text : kFreeOfBadInput)
            isFree = isFree || (isBadInput && line.find(text) != std::string::npos);
        const bool isNowhere =
            hasVertexNowhere && line.find(" is outside the ") != std::string::npos;
        const bool isUnusedSize =
            hasUnusedSizes &&
            line.find("or the format are not the device mesh's") != std::string::npos;
        if (!isCloneAttribute && !isNowhere && !isUnusedSize && !isFree)
            faults += line + '\n';
    }
    return faults;
}
