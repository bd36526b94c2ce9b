#pragma once

#include <cstdio>
#include <cstring>
#include <string>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "base/ResetLogForTests.h"
#include "tests/support/CountedAllocations.h"

/// The outcome of an act that ran out of memory.
struct MemoryShortage {
    std::string error; ///< the message of the `Error`; "" if the act succeeded
    std::string log;   ///< what was logged during the act
};

static constexpr int64_t kAllFromThere = INT64_MAX / 2; ///< all allocations fail from there on

static char gLoggedInShortage[16384];

static void LogInShortage(const char* entry)
{
    const size_t length = std::strlen(gLoggedInShortage);
    std::snprintf(gLoggedInShortage + length, sizeof gLoggedInShortage - length, "%s\n", entry);
}

/// The number of allocations that `act` makes.
template <class Act>
int64_t AllocationsOf(const Act& act)
{
    const int64_t before = gAllocations;
    act();
    return gAllocations - before;
}

/// Runs `act`, in which `count` allocations fail after the first `before` ones. Exceptions other than
/// the two kinds of errors are passed on.
template <class Act>
MemoryShortage RunShortOfMemory(int64_t before, int64_t count, const Act& act)
{
    ResetLogForTests();
    gLoggedInShortage[0] = '\0';
    char error[kMessageSize] = ""; // no allocation until the shortage ends
    gLogSink = LogInShortage;
    gFirstFailing = gAllocations + before + 1;
    gLastFailing = gFirstFailing + count - 1;
    try {
        act();
    } catch (const KRE_Error& raised) {
        std::memcpy(error, raised.message, sizeof error);
    } catch (const ErrorMsg& raised) {
        std::memcpy(error, raised.message, sizeof error);
    } catch (...) {
        gFirstFailing = INT64_MAX;
        gLogSink = nullptr;
        throw;
    }
    gFirstFailing = INT64_MAX;
    gLogSink = nullptr;
    return {error, gLoggedInShortage};
}
