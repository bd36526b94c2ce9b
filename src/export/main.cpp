// Entry point of qsbexport, which writes a scene as glTF.

#include "base/EndWithoutMemory.h"
#include "export/RunExport.h"
#include "platform/HostStream.h"

#include <new>

int main(int count, char** values)
try {
    PrepareEndWithoutMemory("qsbexport", count, values, kExportTrouble);
    MakeStandardStreamsSteady();
    return RunExport({values + (count > 0 ? 1 : 0), values + count}, stdout, stderr);
} catch (const std::bad_alloc&) {
    return EndWithoutMemory("qsbexport", count, values, kExportTrouble);
}
