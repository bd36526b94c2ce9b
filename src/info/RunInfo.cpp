#include "info/RunInfo.h"

#include <new>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "info/Arguments.h"
#include "info/Disassembly.h"
#include "info/EffectCompiling.h"
#include "info/InfoEngine.h"
#include "info/LoadedScene.h"
#include "info/NameText.h"
#include "info/Report.h"

namespace {

/// False, with a line about it, if the file cannot be loaded.
bool Load(LoadedScene& loaded, const std::string& file, Output& err)
{
    if (loaded.Load(file))
        return true;
    err.Line({"qsbinfo: ", ShownName(file), ": ", ShownName(loaded.errorText)});
    return false;
}

int RunDiff(const InfoArguments& arguments, Output& out, Output& err)
{
    LoadedScene first;
    LoadedScene second;
    if (!Load(first, arguments.files[0], err) || !Load(second, arguments.files[1], err))
        return kInfoTrouble;
    SceneDiff diff({arguments.tolerance, arguments.all}, out);
    return diff.Compare(first, second) == 0 ? kInfoWell : kInfoDifferent;
}

int RunOnFile(const InfoArguments& arguments, Output& out, Output& err)
{
    LoadedScene loaded;
    if (!Load(loaded, arguments.files[0], err))
        return arguments.mode == InfoMode::kCheck ? kInfoDifferent : kInfoTrouble;
    switch (arguments.mode) {
    case InfoMode::kTree:
        PrintTree(loaded, out);
        return kInfoWell;
    case InfoMode::kEffects:
        PrintEffects(loaded, out);
        return kInfoWell;
    case InfoMode::kJson:
        PrintJson(loaded, out);
        return kInfoWell;
    case InfoMode::kCheck:
        return PrintCheck(loaded, out) ? kInfoWell : kInfoDifferent;
    default:
        PrintReport(loaded, arguments.all, out);
        return kInfoWell;
    }
}

int RunWithEngine(const InfoArguments& arguments, Output& out, Output& err)
{
    const InfoEngine engine;
    return arguments.mode == InfoMode::kDiff ? RunDiff(arguments, out, err)
                                             : RunOnFile(arguments, out, err);
}

/// The one place that catches what a load does not: an engine that does not start, a device that
/// refuses a lock, a report that does not fit in memory.
int RunGuarded(const InfoArguments& arguments, Output& out, Output& err)
{
    std::string files = arguments.files.front(); // before memory runs out
    for (size_t i = 1; i < arguments.files.size(); ++i)
        files += ", " + arguments.files[i];
    std::string text = "not enough memory";
    try {
        return RunWithEngine(arguments, out, err);
    } catch (const KRE_Error& error) {
        text = error.message;
    } catch (const ErrorMsg& error) {
        text = error.message;
    } catch (const std::bad_alloc&) {}
    while (text.ends_with('\n'))
        text.pop_back();
    err.Line({"qsbinfo: ", ShownName(files), ": ", ShownName(text)});
    return kInfoTrouble;
}

} // namespace

int RunInfo(const std::vector<std::string>& arguments, FILE* outStream, FILE* errStream)
{
    Output out(outStream);
    Output err(errStream);
    const InfoArguments read = ReadArguments(arguments);
    int status = kInfoWell;
    if (!read.error.empty()) {
        err.Line({"qsbinfo: ", ShownName(read.error)});
        err.Add(kInfoUsage);
        return kInfoTrouble;
    }
    if (read.mode == InfoMode::kHelp) {
        out.Add(InfoHelp());
    } else if (read.mode == InfoMode::kVersion) {
        out.Add(kInfoVersion);
    } else if (read.mode == InfoMode::kDisassemble) {
        status = PrintDisassembly(read.files[0], out, err) ? kInfoWell : kInfoTrouble;
    } else if (read.mode == InfoMode::kCompile) {
        status = WriteCompiledEffect(read.files[0], read.target, err) ? kInfoWell : kInfoTrouble;
    } else {
        status = RunGuarded(read, out, err);
    }
    if (out.Flush())
        return status;
    err.Line({"qsbinfo: the output could not be written"});
    return kInfoTrouble;
}
