#pragma once

// Colours of scenes are those of the screen; factors of glTF materials are linear.

/// A component of 0 to 1; values outside are clamped.
double LinearFromScreen(double value);
double ScreenFromLinear(double value);
