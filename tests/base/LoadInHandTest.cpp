#include "base/LoadInHand.h"

#include "base/String.h"
#include "tests/base/LogFixture.h"

namespace {

class LoadingReporter : public ErrorClass {
public:
    LoadingReporter() { SetClassName("List"); }
};

class LoadingEngine : public KRE_Base {
public:
    LoadingEngine() { SetClassName("LoadingEngine"); }
};

class LoadInHandTest : public LogFixture {
protected:
    LoadingReporter list;
    LoadingEngine engine;
};

} // namespace

TEST_F(LoadInHandTest, AWarningNamesTheFileBeforeAnErrorThatDoesNot)
{
    const String object("Hull");
    const LoadScope file("boat.qsa");
    {
        const LoadScope inHand(object);
        EXPECT_EQ(RaisedBy([&] { list.Error("too long: %i", 7); }), "too long: 7");
        EXPECT_STREQ(gErrorRecord.source, "List");
        EXPECT_STREQ(gErrorRecord.message, "too long: 7");
    }
    EXPECT_EQ(RaisedBy([&] { engine.Error("failed: %s", "x"); }), "failed: x");
    EXPECT_STREQ(gKreErrorRecord.source, "LoadingEngine");
    EXPECT_STREQ(gKreErrorRecord.message, "failed: x");
    EXPECT_EQ(
        LogText(),
        Entry("Warning:List: File 'boat.qsa', object 'Hull': cannot be loaded, the error follows") +
            Entry("Error:List: too long: 7") +
            Entry("Warning:LoadingEngine: File 'boat.qsa': cannot be loaded, the error follows") +
            Entry("Error:LoadingEngine: failed: x"));
}

TEST_F(LoadInHandTest, AnErrorThatNamesTheFileHasNoWarningBeforeIt)
{
    const LoadScope file("boat.qsa");
    RaisedBy([&] { list.Error("%s: cut off", "boat.qsa"); });
    RaisedBy([&] { engine.Error("File '%s': cut off", "boat.qsa"); });
    EXPECT_EQ(LogText(), Entry("Error:List: boat.qsa: cut off") +
                             Entry("Error:LoadingEngine: File 'boat.qsa': cut off"));
}

TEST_F(LoadInHandTest, WhatIsInHandEndsWithItsScope)
{
    const String outer("Hull");
    const String inner("Mast");
    const String unnamed;
    {
        const LoadScope file("boat.qsa");
        const LoadScope inHand(outer);
        RaisedBy([&] {
            const LoadScope deeper(inner);
            list.Error("a");
        });
        RaisedBy([&] { list.Error("b"); });
        const LoadScope nothingYet(unnamed);
        RaisedBy([&] { list.Error("c"); });
        const LoadScope other("oar.qsa");
        RaisedBy([&] { list.Error("d"); });
    }
    RaisedBy([&] { list.Error("e"); });
    const std::string end = "cannot be loaded, the error follows";
    EXPECT_EQ(LogText(),
              Entry("Warning:List: File 'boat.qsa', object 'Mast': " + end) +
                  Entry("Error:List: a") +
                  Entry("Warning:List: File 'boat.qsa', object 'Hull': " + end) +
                  Entry("Error:List: b") + Entry("Warning:List: File 'boat.qsa': " + end) +
                  Entry("Error:List: c") + Entry("Warning:List: File 'oar.qsa': " + end) +
                  Entry("Error:List: d") + Entry("Error:List: e"));
}
