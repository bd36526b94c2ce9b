#include "app/Options.h"

#include <gtest/gtest.h>
#include <string>

namespace {

struct SwitchCase {
    const char* name;
    const int* variable;
    int defaultValue;
    int whenGiven;
};

const SwitchCase kSwitches[] = {
    {"/s", &gRecurse, 0, 1},
    {"/loop", &gLoop, 0, 1},
    {"/full", &gWindowed, 1, 0},
    {"/stop", &gStopTime, 0, 1},
    {"/fps", &gShowFps, 0, 1},
    {"/close", &gCloseAtEnd, 0, 1},
    {"/nospec", &gSpecularOn, 1, 0},
    {"/nr", &gNoResize, 0, 1},
    {"/nokey", &gNoKey, 0, 1},
    {"/nm", &gNoMenu, 0, 1},
    {"/nl", &gLightingOn, 1, 0},
    {"/esc", &gEscOff, 0, 1},
    {"/zbuf", &gWBuffer, 1, 0},
    {"/hv", &gHardwareVertices, 0, 1},
    {"/ref", &gReferenceRasterizer, 0, 1},
    {"/no", &gNoOverwrite, 0, 1},
};

struct IntCase {
    const char* name;
    const int* variable;
    int windowedDefault;
    int fullScreenDefault;
};

const IntCase kInts[] = {
    {"/resx", &gResX, 640, 1024},  {"/resy", &gResY, 480, 768},      {"/scr", &gAdapter, 0, 0},
    {"/cam", &gCameraIndex, 0, 0}, {"/bpp", &gBitsPerPixel, 16, 16}, {"/vs", &gVsync, 0, 0},
};

struct FloatCase {
    const char* name;
    const float* variable;
    float defaultValue;
};

const FloatCase kFloats[] = {
    {"/zn", &gNearZ, 1.0f},
    {"/zf", &gFarZ, 10000.0f},
    {"/spd", &gSpeed, 1.0f},
    {"/t", &gStartTime, 0.0f},
};

std::string Upper(std::string text)
{
    for (char& c : text)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    return text;
}

} // namespace

TEST(ParseOptions, EverySwitchInBothCasesAndItsDefault)
{
    for (const SwitchCase& c : kSwitches) {
        ParseOptions("a.qsa");
        EXPECT_EQ(*c.variable, c.defaultValue) << c.name;
        ParseOptions(("a.qsa " + std::string(c.name)).c_str());
        EXPECT_EQ(*c.variable, c.whenGiven) << c.name;
        ParseOptions((Upper(c.name) + " a.qsa").c_str());
        EXPECT_EQ(*c.variable, c.whenGiven) << c.name;
        ParseOptions(("a.qsa " + std::string(c.name) + ":1").c_str());
        EXPECT_EQ(*c.variable, c.defaultValue) << c.name << " is no value option";
    }
}

TEST(ParseOptions, EveryIntValueInBothFormsAndItsDefaults)
{
    for (const IntCase& c : kInts) {
        ParseOptions("a.qsa");
        EXPECT_EQ(*c.variable, c.windowedDefault) << c.name;
        ParseOptions("a.qsa /full");
        EXPECT_EQ(*c.variable, c.fullScreenDefault) << c.name;
        ParseOptions((std::string(c.name) + ":37 a.qsa").c_str());
        EXPECT_EQ(*c.variable, 37) << c.name;
        ParseOptions((Upper(c.name) + "=-4 a.qsa").c_str());
        EXPECT_EQ(*c.variable, -4) << c.name;
        ParseOptions((std::string(c.name) + " 37").c_str());
        EXPECT_EQ(*c.variable, c.windowedDefault) << c.name << " without a separator";
    }
}

TEST(ParseOptions, EveryFloatValueInBothFormsAndItsDefault)
{
    for (const FloatCase& c : kFloats) {
        ParseOptions("a.qsa");
        EXPECT_EQ(*c.variable, c.defaultValue) << c.name;
        ParseOptions((std::string(c.name) + ":2.5 a.qsa").c_str());
        EXPECT_EQ(*c.variable, 2.5f) << c.name;
        ParseOptions((Upper(c.name) + "=-0.5 a.qsa").c_str());
        EXPECT_EQ(*c.variable, -0.5f) << c.name;
        ParseOptions((std::string(c.name) + " 3").c_str());
        EXPECT_EQ(*c.variable, c.defaultValue) << c.name << " without a separator";
    }
}

TEST(ParseOptions, ResolutionWithoutAValueFollowsFullScreen)
{
    ParseOptions("a.qsa /resx");
    EXPECT_EQ(gResX, 640);
    ParseOptions("a.qsa /resx /full");
    EXPECT_EQ(gResX, 1024);
    ParseOptions("a.qsa /resx:-1");
    EXPECT_EQ(gResX, -1);
}

TEST(ParseOptions, EqualNearAndFarPlanesAreKeptAsGiven)
{
    ParseOptions("a.qsa /zn:5 /zf:5");
    EXPECT_EQ(gNearZ, 5.0f);
    EXPECT_EQ(gFarZ, gNearZ);
}

TEST(HasHelpSwitch, KnowsThreeForms)
{
    EXPECT_EQ(HasHelpSwitch("/?"), 1);
    EXPECT_EQ(HasHelpSwitch("/h"), 1);
    EXPECT_EQ(HasHelpSwitch("a.qsa /Help"), 1);
    EXPECT_EQ(HasHelpSwitch("a.qsa /helpme"), 0);
    EXPECT_EQ(HasHelpSwitch("a.qsa"), 0);
}
