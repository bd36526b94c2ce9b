#include "base/Log.h"

#include <cstdarg>
#include <cstdio>

#include <windows.h>

#include "base/Clock.h"
#include "base/FileStream.h"
#include "base/FormatText.h"
#include "base/String.h"
#include "base/WithMemory.h"
#include "platform/OpenFileStream.h"

namespace {

/// Holds a string that is never destroyed: destructors of static objects may still log.
union Immortal {
    constexpr Immortal() : text() {}
    ~Immortal() {}
    String text;
};

constinit Immortal directory;

uint64_t FreePhysicalMemory()
{
    MEMORYSTATUS status = {};
    status.dwLength = sizeof status;
    GlobalMemoryStatus(&status);
    return status.dwAvailPhys;
}

/// Stays empty if the current directory is unknown; the log then has its bare name.
void TakeLogDirectory()
{
    const DWORD needed = GetCurrentDirectoryA(0, nullptr);
    if (needed == 0)
        return;
    String current;
    current.Allocate(static_cast<int32_t>(needed));
    const DWORD length = GetCurrentDirectoryA(needed, current.GetBuffer(0));
    if (length > 0 && length < needed)
        gLogDirectory.Assign(current.c_str());
}

FileStream OpenLog()
{
    String path(gLogDirectory);
    const int32_t length = path.TextLength();
    const char last = length > 0 ? path.c_str()[length - 1] : '/';
    if (last != '/' && last != '\\')
        path.Append("/");
    path.Append(kLogFileName);
    return FileStream(OpenFileStream(path.c_str(), gLogEntries == 0 ? "w+t" : "a+t"));
}

} // namespace

int32_t gLogEntries = 0;
double gLogStartTime = 0.0;
constinit String& gLogDirectory = directory.text;
uint8_t gLogWithTime = 1;
void (*gLogSink)(const char* entry) = nullptr;
double (*gLogClock)() = GetTimeSeconds;
uint64_t (*gLogFreeMemory)() = FreePhysicalMemory;

static void WriteEntry(const char* text)
{
    if (gLogEntries == 0)
        gLogStartTime = gLogClock();
    const uint64_t freeBytes = gLogWithTime ? gLogFreeMemory() : 0;
    if (gLogDirectory.IsEmpty())
        TakeLogDirectory();

    // Opened and closed for every entry, so that a crash loses nothing.
    const FileStream stream = OpenLog();
    if (!stream)
        return;
    ++gLogEntries;

    char note[128] = "\n";
    if (gLogWithTime) {
        FormatText(note, sizeof note, "(Time:%.2f, free sysmem:%i)\n", gLogClock() - gLogStartTime,
                   static_cast<int>((freeBytes + 0x80000) >> 20));
    }
    const char* limit =
        gLogEntries == kMaxLogEntries ? "Maximum number of log entries reached!\n" : "";
    std::fprintf(stream.get(), "%s%s%s", text, note, limit);
}

void LogWrite(const char* format, ...)
{
    if (!gLogSink && gLogEntries >= kMaxLogEntries)
        return;
    char text[kLogTextSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(text, sizeof text, format, arguments);
    va_end(arguments);
    if (gLogSink)
        gLogSink(text);
    else // running out of memory is logged too; if not even the path fits, the entry is lost
        WithMemory([&] { WriteEntry(text); }, [] {});
}
