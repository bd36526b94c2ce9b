#include "platform/headless/d3d9/ObjectCensus.h"

#include "platform/headless/d3d9/TestControl.h"

#include <cstdio>
#include <numeric>
#include <utility>

namespace headless {

ObjectCensus gObjectCensus;

namespace {

struct KindName {
    const char* one;
    const char* many;
};

constexpr KindName kKindNames[kObjectKindCount] = {
    {"interface", "interfaces"},
    {"device", "devices"},
    {"texture", "textures"},
    {"surface", "surfaces"},
    {"vertex buffer", "vertex buffers"},
    {"index buffer", "index buffers"},
    {"shader", "shaders"},
};

std::string gLastLeak;

} // namespace

int ObjectCensus::Total() const
{
    return std::accumulate(counts.begin(), counts.end(), 0);
}

std::string ObjectCensus::Report() const
{
    std::string text;
    for (size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] == 0)
            continue;
        text += text.empty() ? "" : ", ";
        text += std::to_string(counts[i]) + " ";
        text += counts[i] == 1 ? kKindNames[i].one : kKindNames[i].many;
    }
    return text;
}

void ReportLeak(const char* what, const ObjectCensus& children)
{
    gLastLeak = children.Report();
    std::fprintf(stderr, "%s released with live children: %s\n", what, gLastLeak.c_str());
}

std::string TakeLastLeak()
{
    return std::exchange(gLastLeak, std::string());
}

std::string TakeLeakReport()
{
    return TakeLastLeak();
}

std::string LiveObjectReport()
{
    return gObjectCensus.Report();
}

} // namespace headless
