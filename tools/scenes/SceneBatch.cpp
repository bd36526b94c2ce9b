#include "tools/scenes/SceneBatch.h"

#include "tools/scenes/SceneWriter.h"

#include <fstream>

namespace fs = std::filesystem;

namespace {

/// Small frames: an emulated processor draws them too.
const std::vector<std::string> kArguments = {"*.qsa", "/stop", "/resx:160", "/resy:120"};
const std::vector<std::vector<std::string>> kOptions = {
    {}, {"/nl"}, {"/zbuf"}, {"/nospec", "/t:1.3"}, {"/zn:1", "/zf:2"}};

void CopyFiles(const fs::path& from, const fs::path& to, const std::vector<const char*>& suffixes)
{
    for (const auto& entry : fs::directory_iterator(from)) {
        for (const char* suffix : suffixes) {
            if (entry.path().extension() == suffix)
                fs::copy_file(entry.path(), to / entry.path().filename());
        }
    }
}

void WriteText(const fs::path& file, const std::string& text)
{
    std::ofstream stream;
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream.open(file, std::ios::binary);
    stream << text;
    stream.close();
}

} // namespace

std::vector<std::string> WriteSceneBatch(unsigned batch, const fs::path& examples,
                                         const fs::path& directory)
{
    fs::create_directories(directory);
    CopyFiles(examples, directory, {".png", ".tga", ".bmp", ".ifl"});
    CopyFiles(examples / "effects", directory, {".fx"});
    WriteText(directory / "broken.png", "no picture");
    WriteText(directory / "broken.fx", "technique {");
    for (unsigned i = 0; i < kScenesPerBatch; ++i) {
        const auto ending =
            i + 1 == kScenesPerBatch ? static_cast<SceneEnding>(batch % 4) : SceneEnding::None;
        WriteText(directory / ("scene" + std::to_string(100 + i) + ".qsa"),
                  WriteScene(batch * kScenesPerBatch + i, ending));
    }
    std::vector<std::string> arguments = kArguments;
    const auto& options = kOptions[batch % kOptions.size()];
    arguments.insert(arguments.end(), options.begin(), options.end());
    return arguments;
}
