#include "platform/headless/d3d9/CallLog.h"

#include "platform/headless/d3d9/TestControl.h"
#include "platform/headless/d3d9/UnmodelledCalls.h"

#include <cstdio>
#include <map>

namespace headless {

namespace {

std::map<std::string, int> gUnmodelledCalls;
std::string gLastRefusal;
int gQuietCount = 0;

} // namespace

HRESULT LogUnmodelled(const char* name, const std::string& arguments, HRESULT result)
{
    gLastRefusal = std::string(name) + '(' + arguments + ')';
    if (gQuietCount == 0 && gUnmodelledCalls[name]++ == 0)
        std::fprintf(stderr, "UNMODELLED %s(%s)\n", name, arguments.c_str());
    return result;
}

void ForgetUnmodelledCalls()
{
    gUnmodelledCalls.clear();
    gLastRefusal.clear();
}

void LogLack(const std::string& text)
{
    std::fprintf(stderr, "UNMODELLED %s\n", text.c_str());
}

QuietRefusals::QuietRefusals()
{
    ++gQuietCount;
    gLastRefusal.clear();
}

QuietRefusals::~QuietRefusals()
{
    --gQuietCount;
}

const std::string& LastRefusal()
{
    return gLastRefusal;
}

int UnmodelledCallCount(const char* name)
{
    const auto entry = gUnmodelledCalls.find(name);
    return entry == gUnmodelledCalls.end() ? 0 : entry->second;
}

} // namespace headless
