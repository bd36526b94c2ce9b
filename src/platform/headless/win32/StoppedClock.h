#pragma once

namespace headless {

/// From here on the clock stands, for the whole process: what depends on the time of the run (the rate
/// in the banner, effects that read the time, the first random number) is the same in every run.
void StopClock();

} // namespace headless
