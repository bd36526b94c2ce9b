// Entry point of qsbinfo, which shows what a scene file holds.

#include "info/RunInfo.h"

int main(int count, char** values)
{
    return RunInfo({values + (count > 0 ? 1 : 0), values + count}, stdout, stderr);
}
