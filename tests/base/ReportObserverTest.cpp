#include "base/ReportObserver.h"

#include <string>
#include <vector>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "tests/base/LogFixture.h"
#include "tests/support/RaisedBy.h"

namespace {

class ReportObserverTest : public LogFixture {};

} // namespace

TEST_F(ReportObserverTest, SeesEachReportBesideTheLog)
{
    struct : ReportObserver {
        void OnReport(ReportKind kind, const char* source, const char* text) override
        {
            seen.push_back((kind == ReportKind::kError ? "E " : "W ") + std::string(source) + " " +
                           text);
        }
        std::vector<std::string> seen;
    } observer;
    struct : ErrorClassSimple {
    } simple;
    struct : KRE_Base {
    } engine;
    engine.SetClassName("Engine");
    gReportObserver = &observer;
    simple.Warning("thin ice: %i", 3);
    for (int i = 0; i < 3; ++i)
        engine.Warning("mist");
    EXPECT_EQ(RaisedBy([&] { simple.Error("sunk"); }), "sunk");
    EXPECT_EQ(RaisedBy([&] { engine.Error("aground"); }), "aground");
    engine.Warning("%s", std::string(1020, 'x').c_str());
    gReportObserver = nullptr;
    engine.Warning("unseen");

    // "Warning:Engine: " takes 16 of a log entry's 1023 characters.
    EXPECT_EQ(observer.seen,
              (std::vector<std::string>{"W ErrorClassSimple thin ice: 3", "W Engine mist",
                                        "W Engine mist", "W Engine mist", "E ErrorClassSimple sunk",
                                        "E Engine aground", "W Engine " + std::string(1007, 'x')}));
    EXPECT_NE(LogText().find("thin ice"), std::string::npos);
}
