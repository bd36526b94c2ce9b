#include "app/Options.h"

#include "app/CommandLine.h"

#include <windows.h>

int gRecurse;
int gLoop;
int gWindowed;
int gStopTime;
int gShowFps;
int gCloseAtEnd;
int gSpecularOn;
int gNoResize;
int gNoKey;
int gNoMenu;
int gLightingOn;
int gEscOff;
int gWBuffer;
int gHardwareVertices;
int gReferenceRasterizer;
int gNoOverwrite;
int gResX;
int gResY;
int gAdapter;
int gCameraIndex;
int gBitsPerPixel;
float gNearZ;
float gFarZ;
float gSpeed;
float gStartTime;
int gVsync;
int gViewEnabled;
char gFilePattern[256];

namespace {

/// A whole-token switch: the variable takes `whenGiven`, or the other of 0 and 1.
struct SwitchOption {
    const char* name;
    int* variable;
    int whenGiven;
};

/// A value option; `fullScreenDefault` holds when /full is given, `windowedDefault` otherwise.
struct IntOption {
    const char* name;
    int* variable;
    int windowedDefault;
    int fullScreenDefault;
};

struct FloatOption {
    const char* name;
    float* variable;
    float defaultValue;
};

const SwitchOption kSwitches[] = {
    {"/s", &gRecurse, 1},
    {"/loop", &gLoop, 1},
    {"/full", &gWindowed, 0},
    {"/stop", &gStopTime, 1},
    {"/fps", &gShowFps, 1},
    {"/close", &gCloseAtEnd, 1},
    {"/nospec", &gSpecularOn, 0},
    {"/nr", &gNoResize, 1},
    {"/nokey", &gNoKey, 1},
    {"/nm", &gNoMenu, 1},
    {"/nl", &gLightingOn, 0},
    {"/esc", &gEscOff, 1},
    {"/zbuf", &gWBuffer, 0},
    {"/hv", &gHardwareVertices, 1},
    {"/ref", &gReferenceRasterizer, 1},
    {"/no", &gNoOverwrite, 1},
};

const IntOption kIntValues[] = {
    {"/resx", &gResX, 640, 1024},  {"/resy", &gResY, 480, 768},      {"/scr", &gAdapter, 0, 0},
    {"/cam", &gCameraIndex, 0, 0}, {"/bpp", &gBitsPerPixel, 16, 16},
};

const FloatOption kFloatValues[] = {
    {"/zn", &gNearZ, 1.0f},
    {"/zf", &gFarZ, 10000.0f},
    {"/spd", &gSpeed, 1.0f},
    {"/t", &gStartTime, 0.0f},
};

const IntOption kVsync = {"/vs", &gVsync, 0, 0};

const char* const kHelpSwitches[] = {"/?", "/H", "/HELP"};

const char kHelpTitle[] = "QSA to QSB converter v1.5";

// The columns suit the box's proportional font; the tabs of the last two lines are intended.
// clang-format off
const char kHelpText[] =
    "Command: QSA2QSB <file.qsa> [Options] \n\nOptions: \n"
    " /?, /H /HELP      shows this window\n"
    " /FULL                fullscreen presentation\n"
    " /FPS                  shows fps\n"
    " /SCR:x              use adapter (screen) number x\n"
    " /NOSPEC           disable specular lighting\n"
    " /RESX:x             x display resolution (window x size)\n"
    " /RESY:x             y display resolution (window y size)\n"
    " /BPP:x               sets bits per pixel (fullscreen)\n"
    " /CAM:x              use camera x\n"
    " /CLOSE              closes viewer at animation end\n"
    " /NR                   disables window resizing\n"
    " /NM                   disables menu\n"
    " /NL                   disables lightin\n"
    " /ZN:x                 sets the near z clipping plane\n"
    " /ZF:x                 sets the far z clipping plane\n"
    " /ZBUF               use z-buffer instead of w-buffer\n"
    " /VS:x                vsync (0,1,2,3 or 4)\n"
    " /HV                   hardware vertex processing\n"
    " /REF                 use reference rasterizer\n"
    " /S\t\t\t\t\tinclude subdirectories\n"
    " /NO\t\t\t\t\tdo not overwrite existing files\n "
    "\nMade by the QSA2QSB developers";
// clang-format on

void ParseInt(const IntOption& option, const char* commandLine)
{
    if (!CmdGetInt(commandLine, option.name, option.variable))
        *option.variable = gWindowed ? option.windowedDefault : option.fullScreenDefault;
}

} // namespace

void ParseOptions(const char* commandLine)
{
    // The switches come first: the default resolution depends on /full.
    for (const SwitchOption& option : kSwitches)
        *option.variable =
            CmdHasSwitch(commandLine, option.name) ? option.whenGiven : 1 - option.whenGiven;
    for (const IntOption& option : kIntValues)
        ParseInt(option, commandLine);
    for (const FloatOption& option : kFloatValues) {
        if (!CmdGetFloat(commandLine, option.name, option.variable))
            *option.variable = option.defaultValue;
    }
    ParseInt(kVsync, commandLine);
}

int HasHelpSwitch(const char* commandLine)
{
    for (const char* name : kHelpSwitches) {
        if (CmdHasSwitch(commandLine, name))
            return 1;
    }
    return 0;
}

void ShowHelp()
{
    MessageBoxA(nullptr, kHelpText, kHelpTitle, MB_OK);
}
