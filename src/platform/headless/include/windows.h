#pragma once

// Stand-in for the Windows header on a host without Windows: the public names, values, layouts and
// calling forms of exactly what the engine uses. What is missing here does not compile, and that is
// the list of what to add.

#include "minwindef.h"

#include "winbase.h"
#include "wingdi.h"
#include "winreg.h"
#include "winuser.h"
