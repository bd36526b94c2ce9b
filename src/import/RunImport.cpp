#include "import/RunImport.h"

#include <filesystem>
#include <new>
#include <set>

#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "import/ImportArguments.h"

namespace {

constexpr int kImportDone = 0;
constexpr int kImportUsageError = 2;

/// A line for people: control characters of names are shown as '?'.
void Line(FILE* stream, std::string text)
{
    for (char& byte : text) {
        if (static_cast<unsigned char>(byte) < ' ' || byte == '\x7F')
            byte = '?';
    }
    std::fprintf(stream, "qsaimport: %s\n", text.c_str());
}

bool ImportOne(const std::string& model, const ImportArguments& arguments, FILE* out, FILE* err)
{
    NoticeList notices;
    std::string fault = "not enough memory";
    try {
        const ImportResult result = ImportModel(model, arguments.options, notices);
        for (const std::string& line : notices.Lines()) {
            if (!arguments.quiet)
                Line(err, model + ": " + line);
        }
        std::fprintf(out, "%s\n", result.scene.c_str());
        return true;
    } catch (const ModelFault& error) {
        fault = error.what();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {}
    Line(err, model + ": " + fault);
    return false;
}

} // namespace

int RunImport(const std::vector<std::string>& arguments, FILE* out, FILE* err)
{
    ImportCommandLine line;
    const ImportArguments read = line.Read(arguments);
    if (!read.error.empty()) {
        Line(err, read.error);
        std::fputs(kImportUsage, err);
        return kImportUsageError;
    }
    if (read.help || read.version) {
        std::fputs(read.help ? line.Help().c_str() : kImportVersion, out);
        return kImportDone;
    }
    std::error_code failure;
    if (!read.options.folder.empty())
        std::filesystem::create_directories(read.options.folder, failure);
    int status = kImportDone;
    std::set<std::string> scenes;
    for (const std::string& model : read.models) {
        const bool isFirst = scenes.insert(SceneOfModel(model, read.options)).second;
        if (!isFirst)
            Line(err, model + ": an earlier model has its scene's name");
        if (!isFirst || !ImportOne(model, read, out, err))
            status = kImportFailed;
    }
    return status;
}
