#include "platform/headless/d3d9/CallControl.h"

#include "platform/headless/d3d9/TestControl.h"
#include "platform/headless/d3d9/UnmodelledCalls.h"

#include <cstdio>
#include <deque>
#include <map>
#include <utility>

namespace headless {

int gOrderedResultCount = 0;

namespace {

std::deque<std::pair<std::string, HRESULT>> gOrderedResults;
std::map<std::string, int> gUnmodelledCalls;
std::string gLastRefusal;
int gQuietCount = 0;

} // namespace

HRESULT TakeOrderedResult(const char* name)
{
    for (auto order = gOrderedResults.begin(); order != gOrderedResults.end(); ++order) {
        if (order->first != name)
            continue;
        const HRESULT result = order->second;
        gOrderedResults.erase(order);
        --gOrderedResultCount;
        return result;
    }
    return D3D_OK;
}

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

void FailNextCall(const char* name, HRESULT result)
{
    gOrderedResults.emplace_back(name, result);
    ++gOrderedResultCount;
}

int ClearFailNextCalls()
{
    gOrderedResults.clear();
    return std::exchange(gOrderedResultCount, 0);
}

int UnmodelledCallCount(const char* name)
{
    const auto entry = gUnmodelledCalls.find(name);
    return entry == gUnmodelledCalls.end() ? 0 : entry->second;
}

} // namespace headless
