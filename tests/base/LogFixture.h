#pragma once

#include <string>

#include <gtest/gtest.h>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "base/ResetLogForTests.h"
#include "tests/support/RaisedBy.h"
#include "tests/support/ScratchDirectory.h"

/// Runs a test in its own directory with an empty log, a stopped clock and 100 MiB of free memory,
/// so every entry ends in the same note.
class LogFixture : public testing::Test {
protected:
    static constexpr const char* kNote = "(Time:0.00, free sysmem:100)\n";

    LogFixture()
    {
        ResetLogForTests();
        gLogClock = [] { return 50.0; };
        gLogFreeMemory = [] { return uint64_t{100} << 20; };
    }
    ~LogFixture() override { ResetLogForTests(); }

    /// The log with plain line ends; empty if there is none.
    std::string LogText() const { return ReadLog("logfile.txt"); }
    std::string ReadLog(const std::string& name) const
    {
        std::string text;
        if (!scratch.Has(name))
            return text;
        for (const char c : scratch.Read(name)) {
            if (c != '\r')
                text += c;
        }
        return text;
    }
    /// One entry as it appears in the log.
    static std::string Entry(const std::string& text) { return text + kNote; }

    ScratchDirectory scratch;
};
