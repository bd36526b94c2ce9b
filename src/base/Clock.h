#pragma once

/// The one clock of the program: high-resolution time in seconds from an arbitrary start.
double GetTimeSeconds();
