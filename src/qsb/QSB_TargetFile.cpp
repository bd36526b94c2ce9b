#include "qsb/QSB_TargetFile.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "base/FormatText.h"

QSB_TargetFile::~QSB_TargetFile()
{
    Close(); // before an unfinished file is removed
}

void QSB_TargetFile::Error(const char* format, ...)
{
    char message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(message, sizeof message, format, arguments);
    va_end(arguments);

    // NOLINTNEXTLINE(bugprone-parent-virtual-call): File's own names the temporary file.
    ErrorClass::Error("%s: %s", targetName.c_str(), message);
}

bool QSB_TargetFile::CreateFor(const char* targetPath)
{
    targetName.Assign(targetPath);
    if (replacement.Make(targetPath) && Create(replacement.Path(), true, false))
        return true;
    Warning("Create() failed: %s, file:'%s'", std::strerror(errno), targetPath);
    return false;
}

void QSB_TargetFile::Finish()
{
    Flush();
    if (!Close())
        Error("Error writing to file");
    if (!replacement.MoveOverTarget())
        Error("Can not replace file: %s", std::strerror(errno));
}
