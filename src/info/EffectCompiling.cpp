#include "info/EffectCompiling.h"

#include <cerrno>
#include <cstring>

#include "base/WriteWholeFile.h"
#include "info/NameText.h"
#include "platform/EffectCompiler.h"

bool WriteCompiledEffect(const std::string& file, const std::string& target, Output& err)
{
    std::string compiled;
    const std::string reason = CompileEffect(file, compiled);
    if (!reason.empty()) {
        err.Line({"qsbinfo: ", ShownName(file), ": ", ShownName(reason)});
        return false;
    }
    errno = 0;
    if (WriteWholeFile(target, compiled))
        return true;
    const int why = errno != 0 ? errno : ENOSPC;
    const std::string fault = std::string("it cannot be written: ") + std::strerror(why);
    err.Line({"qsbinfo: ", ShownName(target), ": ", ShownName(fault)});
    return false;
}
