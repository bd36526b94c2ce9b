#pragma once

// Drawing: only the types that window painting needs.

#include "minwindef.h"
