#pragma once

#include <set>
#include <string>
#include <utility>

#include "base/CFileValidator.h"
#include "base/String.h"

class KRE_Gfx;

/// Finds the textures and effects that scenes name: at the path given, in the directory of the file
/// that names them, or in the default directories. `KRE_Gfx` owns the only instance and forwards to
/// it.
class KRE_SearchPaths {
public:
    explicit KRE_SearchPaths(KRE_Gfx& engine);

    /// Directories searched for files that are not beside the scene; empty for none.
    void SetTexturePath(const char* path);
    void SetBasePath(const char* path);
    const String& TexturePath() const { return texturePath; }
    const String& BasePath() const { return basePath; }
    /// The path of the file that a file in `referrerDirectory` calls `name`, or empty.
    String ResolveTexture(const char* name, const char* referrerDirectory);
    String ResolveEffect(const char* name, const char* referrerDirectory);
    /// As `ResolveTexture`, then looks for the leaf of `name` in `referrerDirectory` itself.
    /// `byLeafOut` tells whether that found it, and may be null.
    String LocateTexture(const char* name, const char* referrerDirectory, bool* byLeafOut);
    /// Finds a file that a file in `directory` names. If there is none, returns false and the name
    /// as the path. A texture found only by its leaf in `directory` causes a warning, once per
    /// scene.
    bool FindTexture(String* pathOut, const char* name, const char* directory);
    bool FindEffect(String* pathOut, const char* name, const char* directory);
    /// Starts a new scene.
    void BeginScene() { toldLeaves.clear(); }

private:
    void Rebuild();
    void TellOfLeaf(const char* name, const char* path);

    KRE_Gfx& gfx; ///< the owner
    String texturePath;
    String basePath;
    CFileValidator textureValidator;
    CFileValidator effectValidator;
    /// Textures of the current scene that were found by their leaves: names and paths.
    std::set<std::pair<std::string, std::string>> toldLeaves;
};
