#pragma once

// Options of the run, written once at start and read by everything. The only later writes: the
// session sets gStopTime at the end of an animation, the file dialogs overwrite gFilePattern.

extern int gRecurse;
extern int gLoop;
extern int gWindowed;
extern int gStopTime;
extern int gShowFps;    // read by nothing: the overlay line is always drawn
extern int gCloseAtEnd; // read by nothing: the session always ends after its frame
extern int gSpecularOn;
extern int gNoResize;
extern int gNoKey;
extern int gNoMenu;
extern int gLightingOn;
extern int gEscOff;
extern int gWBuffer;
extern int gHardwareVertices;
extern int gReferenceRasterizer;
extern int gNoOverwrite;
extern int gResX;         // pixels
extern int gResY;         // pixels
extern int gAdapter;      // from 0
extern int gCameraIndex;  // from 0; out of range means the free camera
extern int gBitsPerPixel; // full screen only
extern float gNearZ;
extern float gFarZ; // equal to gNearZ: both come from the scene's bounds
extern float gSpeed;
extern float gStartTime; // seconds
extern int gVsync;       // 0 to 4

/// The frame is drawn when not 0. An internal switch with no option behind it.
extern int gViewEnabled;

/// File name or wildcard pattern; the leaf part only once the walk has begun.
extern char gFilePattern[256];

/// Sets every option from the command line, or to its default, in the order of the option table.
void ParseOptions(const char* commandLine);

/// 1 if one of the three help switches stands on the command line.
int HasHelpSwitch(const char* commandLine);

/// Shows the help box and returns when it is answered.
void ShowHelp();
