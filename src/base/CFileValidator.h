#pragma once

#include <cstdint>

#include "base/DynaMem.h"
#include "base/String.h"

/// Finds the file for a name in a scene: beside the scene, then in a list of
/// directories, with alternative extensions. Reports nothing.
class CFileValidator {
public:
    struct DirData {
        String path;           ///< ends in a separator
        uint8_t matchLeaf = 0; ///< 1: searched for the leaf name also
    };

    /// Empties both lists and the base path.
    void Clear();
    /// Adds a search directory, tried in order of adding.
    void AddDirectory(const char* path, bool matchLeaf);
    /// Adds an alternative extension, without its dot, tried in order of adding.
    void AddExtension(const char* extension);
    /// The directory of the file that refers to the name; empty for the current one.
    void SetBasePath(const char* path);

    /// Whether `name` exists, as it is or with one of the extensions; `pathOut` gets the path found
    /// or becomes empty.
    bool Exists(const String& name, String* pathOut) const;
    /// The path of the file found, or empty. The file beside the scene wins. If an absolute name does
    /// not exist, its leaf is looked for in the directories that allow it.
    String Resolve(const String& name) const;

private:
    bool ResolveRelative(const String& name, const String& leaf, bool hasDirectory,
                         String* pathOut) const;
    bool ResolveAbsolute(const String& name, const String& leaf, bool hasDirectory,
                         String* pathOut) const;

    DynaMem<DirData, 8, 1> directories;
    DynaMem<String, 8, 1> extensions;
    String basePath; ///< ends in a separator, or empty
};
