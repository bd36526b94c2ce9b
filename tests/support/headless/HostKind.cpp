#include "tests/support/HostKind.h"

bool IsHeadlessHost()
{
    return true;
}
