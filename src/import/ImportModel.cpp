#include "import/ImportModel.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sstream>

#include "base/Ascii.h"
#include "base/WriteWholeFile.h"
#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "import/ChildRun.h"
#include "import/PictureStore.h"
#include "import/ReadAssimp.h"
#include "import/ReadGltf.h"
#include "import/WriteQsa.h"

namespace fs = std::filesystem;

namespace {

std::string FolderOf(const std::string& path, const ImportOptions& options)
{
    if (options.folder.empty())
        return path.substr(0, path.find_last_of('/') + 1);
    return options.folder.back() == '/' ? options.folder : options.folder + "/";
}

bool IsGltf(const std::string& path)
{
    std::string extension = fs::path(path).extension().string();
    for (char& byte : extension)
        byte = ToLowerAscii(byte);
    return extension == ".gltf" || extension == ".glb";
}

ImportResult WriteModel(const Model& model, const std::string& path, const ImportOptions& options,
                        NoticeList& notices)
{
    QsaScene scene;
    PlanScene(model, options.plan, notices, scene);
    const std::string folder = FolderOf(path, options);
    const std::string stem = fs::path(path).stem().string();
    PictureStore store(folder, stem, notices);
    const std::vector<std::string> pictures = store.Keep(model);
    ImportResult result;
    result.scene = SceneOfModel(path, options);
    errno = 0;
    if (!WriteWholeFile(result.scene, WriteQsa(scene, model, pictures)))
        throw ModelFault("the scene '" + result.scene +
                         "' cannot be written: " + std::strerror(errno != 0 ? errno : ENOSPC));
    result.pictures = store.Written();
    result.inputs = model.inputs;
    for (const ModelImage& image : model.images) {
        if (!image.file.empty())
            result.inputs.push_back(image.file);
    }
    return result;
}

// ---- What a child tells its parent: lines of a letter, a number and a text

std::string OneLine(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text + "\n";
}

[[maybe_unused]] std::string WorkOfChild(const std::string& path, const ImportOptions& options)
{
    std::string told;
    try {
        NoticeList notices;
        Model model;
        if constexpr (QSA_READS_OTHERS) {
            if (!KnowsAssimp(path))
                throw ModelFault("it is of a format that is not read");
            model = ReadAssimp(path, options.animation, notices);
        }
        const ImportResult result = WriteModel(model, path, options, notices);
        for (const auto& [text, count] : notices.All())
            told += "N " + std::to_string(count) + " " + OneLine(text);
        for (const std::string& picture : result.pictures)
            told += "P 0 " + OneLine(picture);
        for (const std::string& input : result.inputs)
            told += "I 0 " + OneLine(input);
        told += "S 0 " + OneLine(result.scene);
    } catch (const ModelFault& fault) {
        told = "F 0 " + OneLine(fault.what());
    }
    return told;
}

ImportResult ResultOfChild(const std::string& told, NoticeList& notices)
{
    ImportResult result;
    std::istringstream lines(told);
    for (std::string line; std::getline(lines, line);) {
        const size_t blank = line.find(' ', 2);
        const std::string text = line.substr(blank + 1);
        if (line[0] == 'F')
            throw ModelFault(text);
        if (line[0] == 'N')
            notices.Add(text, std::stoll(line.substr(2)));
        else if (line[0] == 'P')
            result.pictures.push_back(text);
        else if (line[0] == 'I')
            result.inputs.push_back(text);
        else
            result.scene = text;
    }
    if (result.scene.empty())
        throw ModelFault("its reader ended without a result");
    return result;
}

/// Reads the model in this process, for a process that has only this model to lose. As in a child, an exception of
/// the library means that sizes in the model are nonsense.
std::string WorkAlone(const std::string& path, const ImportOptions& options)
{
    try {
        return WorkOfChild(path, options);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        throw ModelFault("reading it needs too much memory");
    }
}

[[maybe_unused]] ImportResult ImportOther(const std::string& path, const ImportOptions& options,
                                          NoticeList& notices)
{
    if (options.isAlone)
        return ResultOfChild(WorkAlone(path, options), notices);
    std::error_code ignored;
    const double size = static_cast<double>(fs::file_size(path, ignored));
    const double seconds = options.mostSeconds > 0 ? options.mostSeconds : 10 + size / (1 << 20);
    const std::string told =
        RunInChild({seconds, options.mostBytes}, [&] { return WorkOfChild(path, options); });
    return ResultOfChild(told, notices);
}

} // namespace

std::string SceneOfModel(const std::string& path, const ImportOptions& options)
{
    return FolderOf(path, options) + fs::path(path).stem().string() + ".qsa";
}

ImportResult ImportModel(const std::string& path, const ImportOptions& options, NoticeList& notices)
{
    if (IsGltf(path))
        return WriteModel(ReadGltf(path, options.animation, notices), path, options, notices);
    std::error_code ignored;
    if (!fs::is_regular_file(path, ignored))
        throw ModelFault("it cannot be read");
    if constexpr (QSA_READS_OTHERS)
        return ImportOther(path, options, notices); // the library is asked in the child only
    throw ModelFault("it is of a format that is not read");
}
