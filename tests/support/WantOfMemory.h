#pragma once

#include <cstdio>
#include <cstring>
#include <string>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "base/ResetLogForTests.h"
#include "tests/support/CountedAllocations.h"

/// How an act ended for which there was not enough memory.
struct WantOfMemory {
    std::string error; ///< the message of the `Error`; "" if the act came through
    std::string log;   ///< what was logged meanwhile
};

static constexpr int64_t kAllFromThere = INT64_MAX / 2; ///< a number of failing allocations

static char gToldWithoutMemory[16384];

static void NoteWithoutMemory(const char* entry)
{
    const size_t length = std::strlen(gToldWithoutMemory);
    std::snprintf(gToldWithoutMemory + length, sizeof gToldWithoutMemory - length, "%s\n", entry);
}

/// The allocations of an act.
template <class Act>
int64_t AllocationsOf(const Act& act)
{
    const int64_t before = gAllocations;
    act();
    return gAllocations - before;
}

/// Runs an act in which `count` allocations fail after the first `before`. Any exception but the
/// two kinds of errors is the caller's.
template <class Act>
WantOfMemory RunShortOfMemory(int64_t before, int64_t count, const Act& act)
{
    ResetLogForTests();
    gToldWithoutMemory[0] = '\0';
    char error[kMessageSize] = ""; // nothing is allocated before the end of the want
    gLogSink = NoteWithoutMemory;
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
    return {error, gToldWithoutMemory};
}
