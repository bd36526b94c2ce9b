// Entry point of qsbatch, which converts many scenes. The same program is its own worker.

#include <cstdlib>
#include <cstring>
#include <new>

#include "base/EndWithoutMemory.h"
#include "batch/RunBatch.h"
#include "batch/Worker.h"
#include "platform/HostStream.h"

int main(int count, char** values)
try {
    PrepareEndWithoutMemory("qsbatch", count, values, kBatchTrouble);
    MakeStandardStreamsSteady();
    if (count == 3 && std::strcmp(values[1], "--worker") == 0)
        return RunWorker(std::atoi(values[2]));
    return RunBatch({values + (count > 0 ? 1 : 0), values + count});
} catch (const std::bad_alloc&) {
    return EndWithoutMemory("qsbatch", count, values, kBatchTrouble);
}
