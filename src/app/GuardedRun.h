#pragma once

/// Exit status of the process. A normal end is 1; scripts that drive the program rely on it.
inline constexpr int kStatusNormal = 1;
inline constexpr int kStatusFailed = 0;

/// Runs `work`, shuts down the graphics and returns the exit status. The only place that catches the two
/// error records: an error ends the whole run with a message box that shows its source and text.
int RunGuarded(void (*work)());
