#include "gfx/KRE_SearchPaths.h"

#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/TextureSearchSink.h"

void (*gTextureSearchSink)(const char* name, const char* path) = nullptr;

namespace {

/// Scenes contain the directories of the machine that they were made on; the files that came with
/// them are mostly in one directory.
String LeafBeside(const char* name, const char* directory)
{
    String leaf;
    SplitLeaf(name, &leaf);
    String path(directory);
    EnsureTrailingSlash(&path);
    path.Append(leaf.c_str());
    if (!FileExists(path.c_str()))
        path.Clear();
    return path;
}

/// Whether a path was found; if not, sets it to the name.
bool IsFound(String* path, const char* name)
{
    const bool found = !path->IsEmpty();
    if (!found)
        path->Assign(name);
    return found;
}

} // namespace

KRE_SearchPaths::KRE_SearchPaths(KRE_Gfx& engine) : gfx(engine)
{
    Rebuild();
}

void KRE_SearchPaths::SetTexturePath(const char* path)
{
    texturePath.Assign(path);
    Rebuild();
}

void KRE_SearchPaths::SetBasePath(const char* path)
{
    basePath.Assign(path);
    Rebuild();
}

void KRE_SearchPaths::Rebuild()
{
    textureValidator.Clear();
    effectValidator.Clear();
    if (!basePath.IsEmpty()) {
        effectValidator.AddDirectory(basePath.c_str(), false);
        textureValidator.AddDirectory(basePath.c_str(), false);
    }
    if (!texturePath.IsEmpty())
        textureValidator.AddDirectory(texturePath.c_str(), true);
    // The compiled effect comes first: it wins over its source if the named file does not exist.
    effectValidator.AddExtension("fxo");
    effectValidator.AddExtension("fx");
}

String KRE_SearchPaths::ResolveTexture(const char* name, const char* referrerDirectory)
{
    textureValidator.SetBasePath(referrerDirectory);
    return textureValidator.Resolve(name);
}

String KRE_SearchPaths::ResolveEffect(const char* name, const char* referrerDirectory)
{
    effectValidator.SetBasePath(referrerDirectory);
    return effectValidator.Resolve(name);
}

String KRE_SearchPaths::LocateTexture(const char* name, const char* referrerDirectory,
                                      bool* byLeafOut)
{
    String path = ResolveTexture(name, referrerDirectory);
    const bool isResolved = !path.IsEmpty();
    if (!isResolved)
        path = LeafBeside(name, referrerDirectory);
    if (byLeafOut)
        *byLeafOut = !isResolved && !path.IsEmpty();
    return path;
}

bool KRE_SearchPaths::FindTexture(String* pathOut, const char* name, const char* directory)
{
    bool isByLeaf = false;
    *pathOut = LocateTexture(name, directory, &isByLeaf);
    if (isByLeaf)
        TellOfLeaf(name, pathOut->c_str());
    if (gTextureSearchSink)
        gTextureSearchSink(name, pathOut->c_str());
    return IsFound(pathOut, name);
}

bool KRE_SearchPaths::FindEffect(String* pathOut, const char* name, const char* directory)
{
    *pathOut = ResolveEffect(name, directory);
    return IsFound(pathOut, name);
}

void KRE_SearchPaths::TellOfLeaf(const char* name, const char* path)
{
    if (toldLeaves.emplace(name, path).second)
        gfx.Warning("Texture '%s' is not in its place, taken from beside the scene: '%s'", name,
                    path);
}
