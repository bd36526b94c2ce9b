#pragma once

extern const char* const kBatchWhat; ///< what the program does
extern const char* const kBatchEnd;  ///< commands and the exit status
extern const char* const kFarmEnd;   ///< the exit status of a command

/// The help of an option, by the name that it is added with.
const char* HelpOf(const char* name);
