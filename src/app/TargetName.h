#pragma once

#include "base/String.h"

/// The name of the QSB file that a scene file is converted to: the last extension is replaced by
/// ".qsb", or added if there is none. A dot at the very start does not begin an extension.
String MakeTargetName(const char* fileName);
