#pragma once

#include "base/CFileValidator.h"
#include "base/KRE_Base.h"
#include "base/String.h"

/// The one object of the graphics engine, reached through `gGfx`. Each topic of its operations has
/// a source file of its own, named after it.
class KRE_Gfx : public KRE_Base {
public:
    KRE_Gfx();
    ~KRE_Gfx() override;
    KRE_Gfx(const KRE_Gfx&) = delete;
    KRE_Gfx& operator=(const KRE_Gfx&) = delete;

    // Paths: KRE_GfxPaths.cpp

    /// Warns about a path that will not travel to another machine and gives false; callers go on
    /// with it. QUIRK: an apostrophe counts as absolute, one leading backslash does not.
    bool CheckPath(const char* path);
    /// Directories that are searched for what is not beside the scene; empty for none.
    void SetDefaultTexturePath(const char* path);
    void SetDefaultBasePath(const char* path);
    const String& GetDefaultTexturePath() const { return defaultTexturePath; }
    const String& GetDefaultBasePath() const { return defaultBasePath; }
    /// The file that `name` stands for in a file of `referrerDirectory`, or empty.
    String ResolveTexturePath(const char* name, const char* referrerDirectory);
    String ResolveEffectPath(const char* name, const char* referrerDirectory);

private:
    void RebuildSearchPaths();

    String defaultTexturePath;
    String defaultBasePath;
    CFileValidator textureValidator;
    CFileValidator effectValidator;
};

/// Owned by graphics start-up and shutdown; null outside them.
extern KRE_Gfx* gGfx;
