#include "base/EndWithoutMemory.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace {

/// Of the command line, for the end of the process.
struct CommandLine {
    const char* program;
    int count;
    const char* const* values;
    int status;
} gCommandLine;

std::terminate_handler gUsualEnd;

[[noreturn]] void EndUncaught()
{
    try {
        if (std::current_exception())
            std::rethrow_exception(std::current_exception());
    } catch (const std::bad_alloc&) {
        const auto& [program, count, values, status] = gCommandLine;
        std::_Exit(EndWithoutMemory(program, count, values, status));
    } catch (...) {
        gUsualEnd();
    }
    std::abort();
}

} // namespace

/// Control characters of names are shown as '?'.
static void PrintName(const char* name)
{
    for (; *name != '\0'; ++name) {
        const bool isShown = static_cast<unsigned char>(*name) >= ' ' && *name != '\x7F';
        std::fputc(isShown ? *name : '?', stderr);
    }
}

int EndWithoutMemory(const char* program, int count, const char* const* values, int status)
{
    std::fflush(stdout); // earlier output appears before the message
    std::fprintf(stderr, "%s: ", program);
    for (int i = 1; i < count; ++i) {
        if (values[i][0] == '-')
            continue;
        PrintName(values[i]);
        std::fputs(": ", stderr);
    }
    std::fputs("not enough memory\n", stderr);
    return status;
}

void PrepareEndWithoutMemory(const char* program, int count, const char* const* values, int status)
{
    gCommandLine = {program, count, values, status};
    gUsualEnd = std::set_terminate(EndUncaught);
}
