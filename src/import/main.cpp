// Entry point of qsaimport, which writes models of other programs as scenes.

#include "base/EndWithoutMemory.h"
#include "import/RunImport.h"
#include "platform/HostStream.h"

#include <new>

int main(int count, char** values)
try {
    PrepareEndWithoutMemory("qsaimport", count, values, kImportFailed);
    MakeStandardStreamsSteady();
    return RunImport({values + (count > 0 ? 1 : 0), values + count}, stdout, stderr);
} catch (const std::bad_alloc&) {
    return EndWithoutMemory("qsaimport", count, values, kImportFailed);
}
