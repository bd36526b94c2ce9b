#pragma once

// Stand-in for the Windows header on a host without Windows: the public names, values, layouts and
// calling conventions of exactly what the engine uses. A missing declaration fails to compile,
// which shows what to add.

#include "minwindef.h"

#include "winbase.h"
#include "wingdi.h"
#include "winreg.h"
#include "winuser.h"
