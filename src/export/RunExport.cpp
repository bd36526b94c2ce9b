#include "export/RunExport.h"

#include <new>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "export/ExportArguments.h"
#include "export/ExportScene.h"
#include "gltf/NoticeList.h"
#include "info/InfoEngine.h"
#include "info/LoadedScene.h"
#include "info/NameText.h"

namespace {

constexpr int kExportDone = 0;

std::string ExportWithEngine(const ExportArguments& arguments, NoticeList& notices)
{
    const InfoEngine engine;
    LoadedScene loaded;
    if (!loaded.Load(arguments.scene))
        return arguments.scene + ": " + loaded.errorText;
    if (!loaded.IsQsb() && !loaded.hasTextMark)
        return arguments.scene + ": neither a QSB file nor a QSA text";
    return ExportScene(loaded, arguments.target, notices);
}

/// The one place that catches what a load does not.
std::string ExportGuarded(const ExportArguments& arguments, NoticeList& notices)
{
    try {
        return ExportWithEngine(arguments, notices);
    } catch (const KRE_Error& error) {
        return arguments.scene + ": " + error.message;
    } catch (const ErrorMsg& error) {
        return arguments.scene + ": " + error.message;
    } catch (const std::bad_alloc&) {
        return arguments.scene + ": not enough memory";
    }
}

void Line(FILE* stream, const std::string& text)
{
    std::fprintf(stream, "qsbexport: %s\n", ShownName(text).c_str());
}

} // namespace

int RunExport(const std::vector<std::string>& arguments, FILE* out, FILE* err)
{
    const ExportArguments read = ReadExportArguments(arguments);
    if (!read.error.empty()) {
        Line(err, read.error);
        std::fputs(kExportUsage, err);
        return kExportTrouble;
    }
    if (read.help || read.version) {
        std::fputs(read.help ? ExportHelp().c_str() : kExportVersion, out);
        return kExportDone;
    }
    NoticeList notices;
    const std::string fault = ExportGuarded(read, notices);
    if (!fault.empty()) {
        Line(err, fault);
        return kExportTrouble;
    }
    for (const std::string& line : notices.Lines()) {
        if (!read.quiet)
            Line(err, read.scene + ": " + line);
    }
    return kExportDone;
}
