#include "base/Log.h"

#include <cstdarg>
#include <cstring>

#include <windows.h>

#include "base/Clock.h"
#include "base/FormatText.h"
#include "base/String.h"
#include "base/WithMemory.h"
#include "platform/AppendedFile.h"

namespace {

/// Holds an object that is never destroyed: destructors of static objects may still log.
template <class T>
union Immortal {
    constexpr Immortal() : object() {}
    ~Immortal() {}
    T object;
};

constinit Immortal<String> directory;
constinit Immortal<AppendedFile> logFile;

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

bool OpenLog()
{
    String path(gLogDirectory);
    const int32_t length = path.TextLength();
    const char last = length > 0 ? path.c_str()[length - 1] : '/';
    if (last != '/' && last != '\\')
        path.Append("/");
    path.Append(kLogFileName);
    return logFile.object.Open(path.c_str(), gLogEntries == 0);
}

} // namespace

int32_t gLogEntries = 0;
double gLogStartTime = 0.0;
constinit String& gLogDirectory = directory.object;
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
    if (!OpenLog())
        return;
    ++gLogEntries;

    char note[128] = "\n";
    if (gLogWithTime) {
        FormatText(note, sizeof note, "(Time:%.2f, free sysmem:%i)\n", gLogClock() - gLogStartTime,
                   static_cast<int>((freeBytes + 0x80000) >> 20));
    }
    const char* limit =
        gLogEntries == kMaxLogEntries ? "Maximum number of log entries reached!\n" : "";
    // One write for the whole entry, so that a crash loses nothing and cuts no entry in two.
    char entry[kLogTextSize + sizeof note + 64];
    FormatText(entry, sizeof entry, "%s%s%s", text, note, limit);
    logFile.object.Append(entry, std::strlen(entry));
}

void CloseLog()
{
    logFile.object.Close();
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
