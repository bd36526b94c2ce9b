#pragma once

extern const char* const kBatchWhat; ///< what the program does
extern const char* const kBatchEnd;  ///< the exit status

/// The help of an option, by the name that it is added with.
const char* HelpOf(const char* name);
