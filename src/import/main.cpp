// Entry point of qsaimport, which writes models of other programs as scenes.

#include "import/RunImport.h"

int main(int count, char** values)
{
    return RunImport({values + (count > 0 ? 1 : 0), values + count}, stdout, stderr);
}
