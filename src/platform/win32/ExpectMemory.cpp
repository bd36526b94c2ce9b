#include "platform/ExpectMemory.h"

void ExpectMemory(int64_t) {}
