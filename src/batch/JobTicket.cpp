#include "batch/JobTicket.h"

#include <sys/mman.h>
#include <unistd.h>

int JobTicket::MakeFile()
{
    const int file = memfd_create("job-ticket", MFD_CLOEXEC);
    if (file >= 0 && ftruncate(file, kPageBytes) != 0) {
        close(file);
        return -1;
    }
    return file;
}

JobTicket::~JobTicket()
{
    if (page)
        munmap(page, kPageBytes);
}

bool JobTicket::Open(int file)
{
    void* const shared = mmap(nullptr, kPageBytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    page = shared == MAP_FAILED ? nullptr : static_cast<Number*>(shared);
    return IsOpen();
}
