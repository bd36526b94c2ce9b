#include "batch/SceneImport.h"

#include <filesystem>
#include <sstream>

#include "base/Ascii.h"
#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "import/ImportArguments.h"

namespace {

/// The options as words, with a model, which the command line asks for.
ImportArguments ReadImportOptions(const std::string& options, const std::string& model)
{
    std::istringstream text(options);
    std::vector<std::string> words;
    for (std::string word; text >> word;)
        words.push_back(word);
    words.push_back(model);
    return ImportCommandLine().Read(std::move(words));
}

} // namespace

bool IsSceneFile(const std::string& leaf)
{
    std::string extension = std::filesystem::path(leaf).extension().string();
    for (char& byte : extension)
        byte = ToLowerAscii(byte);
    return extension == ".qsa" || extension == ".qsb";
}

ImportedScene ImportScene(const std::string& path, const std::string& folder,
                          const std::string& options, bool isAlone)
{
    ImportedScene imported;
    ImportOptions chosen = ReadImportOptions(options, "model").options;
    chosen.folder = folder;
    chosen.isAlone = isAlone;
    NoticeList notices;
    try {
        const ImportResult result = ImportModel(path, chosen, notices);
        imported.leaf = std::filesystem::path(result.scene).filename().string();
        imported.inputs = result.inputs;
    } catch (const ModelFault& fault) {
        imported.fault = fault.what();
    }
    imported.notices = notices.Lines();
    return imported;
}

std::string FaultOfImportOptions(const std::string& options)
{
    const ImportArguments read = ReadImportOptions(options, "model");
    if (!read.error.empty())
        return read.error;
    if (read.help || read.version || read.models.size() != 1 || !read.options.folder.empty())
        return "only options that change the scene are taken";
    return "";
}
