#pragma once

/// Exit status of the process. A normal end is 1; scripts that drive the program rely on it.
inline constexpr int kStatusNormal = 1;
inline constexpr int kStatusFailed = 0;

/// Runs `work`, shuts graphics down and gives the exit status. The only place that catches the two
/// error records: one error ends the whole run with a message box, which names its source and text.
int RunGuarded(void (*work)());
