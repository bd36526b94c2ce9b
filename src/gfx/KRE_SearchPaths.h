#pragma once

#include <set>
#include <string>
#include <utility>

#include "base/CFileValidator.h"
#include "base/String.h"

class KRE_Gfx;

/// Where the textures and effects are that scenes name: as they are named, in the directory of who
/// names them, or in the default directories. `KRE_Gfx` owns the one set of paths and forwards to it.
class KRE_SearchPaths {
public:
    explicit KRE_SearchPaths(KRE_Gfx& engine);

    /// Directories that are searched for what is not beside the scene; empty for none.
    void SetTexturePath(const char* path);
    void SetBasePath(const char* path);
    const String& TexturePath() const { return texturePath; }
    const String& BasePath() const { return basePath; }
    /// The file that `name` stands for in a file of `referrerDirectory`, or empty.
    String ResolveTexture(const char* name, const char* referrerDirectory);
    String ResolveEffect(const char* name, const char* referrerDirectory);
    /// As `ResolveTexture`, and then by the leaf of `name` in `referrerDirectory` itself. `byLeafOut`
    /// tells whether it was found so, and may be null.
    String LocateTexture(const char* name, const char* referrerDirectory, bool* byLeafOut);
    /// Where a file is that a file of `directory` names. If there is none, false with the name. A
    /// texture that is only found by its leaf in `directory` is warned of, once in each scene.
    bool FindTexture(String* pathOut, const char* name, const char* directory);
    bool FindEffect(String* pathOut, const char* name, const char* directory);
    /// Another scene is loaded from here on.
    void BeginScene() { toldLeaves.clear(); }

private:
    void Rebuild();
    void TellOfLeaf(const char* name, const char* path);

    KRE_Gfx& gfx; ///< the owner
    String texturePath;
    String basePath;
    CFileValidator textureValidator;
    CFileValidator effectValidator;
    /// Textures of the scene in hand that were found by their leaves: names and paths.
    std::set<std::pair<std::string, std::string>> toldLeaves;
};
