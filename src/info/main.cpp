// Entry point of qsbinfo, which shows what a scene file holds.

#include "base/EndWithoutMemory.h"
#include "info/RunInfo.h"
#include "platform/HostStream.h"

#include <new>

int main(int count, char** values)
try {
    PrepareEndWithoutMemory("qsbinfo", count, values, kInfoTrouble);
    MakeStandardStreamsSteady();
    return RunInfo({values + (count > 0 ? 1 : 0), values + count}, stdout, stderr);
} catch (const std::bad_alloc&) {
    return EndWithoutMemory("qsbinfo", count, values, kInfoTrouble);
}
