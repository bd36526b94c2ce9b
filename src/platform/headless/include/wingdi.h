#pragma once

// Drawing: only what painting the window's text names.

#include "minwindef.h"
