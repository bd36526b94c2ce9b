#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"

bool KRE_Gfx::CheckPath(const char* path)
{
    if (path[0] == '\\' && path[1] == '\\') {
        Warning("Network file accessed: '%s'", path);
        return false;
    }
    if (path[0] == 0 || path[1] == 0)
        return true;
    // QUIRK: the apostrophe stands where a backslash would be expected, so a path with one leading
    // backslash passes.
    if (path[1] == ':' || path[0] == '\'' || path[0] == '/') {
        Warning("Absolute file path: '%s'", path);
        return false;
    }
    return true;
}

void KRE_Gfx::SetDefaultTexturePath(const char* path)
{
    defaultTexturePath.Assign(path);
    RebuildSearchPaths();
}

void KRE_Gfx::SetDefaultBasePath(const char* path)
{
    defaultBasePath.Assign(path);
    RebuildSearchPaths();
}

void KRE_Gfx::RebuildSearchPaths()
{
    textureValidator.Clear();
    effectValidator.Clear();
    if (!defaultBasePath.IsEmpty()) {
        effectValidator.AddDirectory(defaultBasePath.c_str(), false);
        textureValidator.AddDirectory(defaultBasePath.c_str(), false);
    }
    if (!defaultTexturePath.IsEmpty())
        textureValidator.AddDirectory(defaultTexturePath.c_str(), true);
    // The compiled effect goes first: it wins over its source where the name itself is gone.
    effectValidator.AddExtension("fxo");
    effectValidator.AddExtension("fx");
}

String KRE_Gfx::ResolveTexturePath(const char* name, const char* referrerDirectory)
{
    textureValidator.SetBasePath(referrerDirectory);
    return textureValidator.Resolve(name);
}

/// Scenes carry the directories of the machine that they were made on; what came along with them
/// mostly lies in one directory.
static String LeafBeside(const char* name, const char* directory)
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

String KRE_Gfx::LocateTexture(const char* name, const char* referrerDirectory, bool* byLeafOut)
{
    String path = ResolveTexturePath(name, referrerDirectory);
    const bool isResolved = !path.IsEmpty();
    if (!isResolved)
        path = LeafBeside(name, referrerDirectory);
    if (byLeafOut)
        *byLeafOut = !isResolved && !path.IsEmpty();
    return path;
}

void KRE_Gfx::TellOfLeaf(const char* name, const char* path)
{
    if (toldLeaves.emplace(name, path).second)
        Warning("Texture '%s' is not in its place, taken from beside the scene: '%s'", name, path);
}

String KRE_Gfx::ResolveEffectPath(const char* name, const char* referrerDirectory)
{
    effectValidator.SetBasePath(referrerDirectory);
    return effectValidator.Resolve(name);
}
