#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_SearchPaths.h"

bool KRE_Gfx::CheckPath(const char* path)
{
    if (path[0] == '\\' && path[1] == '\\') {
        Warning("Network file accessed: '%s'", path);
        return false;
    }
    if (path[0] == 0 || path[1] == 0)
        return true;
    // QUIRK: the apostrophe is tested where a backslash would be expected, so a path with one
    // leading backslash passes.
    if (path[1] == ':' || path[0] == '\'' || path[0] == '/') {
        Warning("Absolute file path: '%s'", path);
        return false;
    }
    return true;
}

void KRE_Gfx::SetDefaultTexturePath(const char* path)
{
    searchPaths->SetTexturePath(path);
}

void KRE_Gfx::SetDefaultBasePath(const char* path)
{
    searchPaths->SetBasePath(path);
}

const String& KRE_Gfx::GetDefaultTexturePath() const
{
    return searchPaths->TexturePath();
}

const String& KRE_Gfx::GetDefaultBasePath() const
{
    return searchPaths->BasePath();
}

String KRE_Gfx::ResolveTexturePath(const char* name, const char* referrerDirectory)
{
    return searchPaths->ResolveTexture(name, referrerDirectory);
}

String KRE_Gfx::ResolveEffectPath(const char* name, const char* referrerDirectory)
{
    return searchPaths->ResolveEffect(name, referrerDirectory);
}

String KRE_Gfx::LocateTexture(const char* name, const char* referrerDirectory, bool* byLeafOut)
{
    return searchPaths->LocateTexture(name, referrerDirectory, byLeafOut);
}

bool KRE_Gfx::FindTextureFile(String* pathOut, const char* name, const char* directory)
{
    return searchPaths->FindTexture(pathOut, name, directory);
}

bool KRE_Gfx::FindEffectFile(String* pathOut, const char* name, const char* directory)
{
    return searchPaths->FindEffect(pathOut, name, directory);
}
