#pragma once

#include <string>
#include <vector>

/// What became of a model.
struct ImportedScene {
    std::string leaf;                 ///< of the scene's text; empty if there is none
    std::string fault;                ///< why not
    std::vector<std::string> notices; ///< what a scene cannot carry
    std::vector<std::string> inputs;  ///< absolute paths of further files that were looked for
};

/// Whether a source is a text or a binary scene, by its name.
bool IsSceneFile(const std::string& leaf);

/// Imports a model into a folder. Both paths are absolute; `options` are those of the importer's command line.
/// With `isAlone` the process is for this model alone, and no reader gets a process of its own.
ImportedScene ImportScene(const std::string& path, const std::string& folder,
                          const std::string& options, bool isAlone);

/// What is wrong with options of the importer; empty if nothing is.
std::string FaultOfImportOptions(const std::string& options);
