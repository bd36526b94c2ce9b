#include "tests/faults/FaultOrder.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace faults {

static Result gOwnResult;

Order gOrder;
Result* gResult = &gOwnResult;
bool gIsArmed = false;

void Order::Read(const char* text)
{
    int roleNumber = 0;
    int kindNumber = 0;
    int mannerNumber = 0;
    long long wanted = 0;
    if (std::sscanf(text, "%d %d %d %lld %d", &roleNumber, &kindNumber, &mannerNumber, &wanted,
                    &error) != 5)
        _exit(125);
    role = static_cast<Role>(roleNumber);
    kind = static_cast<Kind>(kindNumber);
    manner = static_cast<Manner>(mannerNumber);
    number = wanted;
}

bool Order::Hits(int64_t count) const
{
    switch (manner) {
    case Manner::kOnce:
        return count == number;
    case Manner::kFromThere:
        return count >= number;
    case Manner::kEachFirst:
        return count % 2 == 1;
    }
    return false;
}

void OpenResult()
{
    const char* path = getenv("FAULTS_RESULT");
    const int file = path ? open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0)
        return;
    void* mapped = mmap(nullptr, sizeof(Result), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    if (mapped != MAP_FAILED)
        gResult = static_cast<Result*>(mapped);
}

} // namespace faults
