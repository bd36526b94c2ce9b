#pragma once

// Options of the run, set once at the start. The only later changes: the session sets gStopTime at the
// end of an animation, the file dialogs overwrite gFilePattern.

extern int gRecurse;
extern int gLoop;
extern int gWindowed;
extern int gStopTime;
extern int gShowFps;    // not used: the overlay line is always drawn
extern int gCloseAtEnd; // not used: the session always ends after its frame
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
extern float gFarZ; // if equal to gNearZ, both come from the scene's bounds
extern float gSpeed;
extern float gStartTime; // seconds
extern int gVsync;       // 0 to 4

/// The frame is drawn if not 0. An internal switch without an option.
extern int gViewEnabled;

/// File name or wildcard pattern; the leaf part only once the walk has begun.
extern char gFilePattern[256];

/// Sets every option from the command line, or to its default, in the order of the option table.
void ParseOptions(const char* commandLine);

/// 1 if the command line contains one of the three help switches.
int HasHelpSwitch(const char* commandLine);

/// Shows the help box and returns when it is closed.
void ShowHelp();
