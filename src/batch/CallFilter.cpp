#include "batch/CallFilter.h"

#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <memory>

#include <fcntl.h>
#include <linux/seccomp.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// Calls with any arguments: nothing in them reaches what Landlock and the open descriptors do not give.
constexpr int kFreeCalls[] = {
    // Open files.
    SCMP_SYS(read),
    SCMP_SYS(readv),
    SCMP_SYS(pread64),
    SCMP_SYS(write),
    SCMP_SYS(writev),
    SCMP_SYS(pwrite64),
    SCMP_SYS(lseek),
    SCMP_SYS(close),
    SCMP_SYS(fstat),
    SCMP_SYS(flock),
    SCMP_SYS(fsync),
    SCMP_SYS(fdatasync),
    SCMP_SYS(fadvise64),
    SCMP_SYS(getdents64),
    SCMP_SYS(fchdir),
    SCMP_SYS(poll),
    SCMP_SYS(ppoll),
    // Names of files.
    SCMP_SYS(stat),
    SCMP_SYS(lstat),
    SCMP_SYS(newfstatat),
    SCMP_SYS(statx),
    SCMP_SYS(access),
    SCMP_SYS(faccessat),
    SCMP_SYS(faccessat2),
    SCMP_SYS(readlink),
    SCMP_SYS(readlinkat),
    SCMP_SYS(getcwd),
    SCMP_SYS(mkdir),
    SCMP_SYS(mkdirat),
    SCMP_SYS(rename),
    SCMP_SYS(renameat),
    SCMP_SYS(renameat2),
    SCMP_SYS(unlink),
    SCMP_SYS(unlinkat),
    // Memory, and the process itself.
    SCMP_SYS(brk),
    SCMP_SYS(munmap),
    SCMP_SYS(mremap),
    SCMP_SYS(madvise),
    SCMP_SYS(futex),
    SCMP_SYS(getpid),
    SCMP_SYS(gettid),
    SCMP_SYS(getrandom),
    SCMP_SYS(getrusage),
    SCMP_SYS(sysinfo),
    SCMP_SYS(sched_getaffinity),
    SCMP_SYS(sched_yield),
    SCMP_SYS(clock_gettime),
    SCMP_SYS(gettimeofday),
    SCMP_SYS(time),
    SCMP_SYS(nanosleep),
    SCMP_SYS(clock_nanosleep),
    SCMP_SYS(rt_sigaction),
    SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(rt_sigreturn),
    SCMP_SYS(restart_syscall),
    SCMP_SYS(exit),
    SCMP_SYS(exit_group),
};

/// A new filter in which everything is refused; its owner adds what is not.
class NewFilter {
public:
    NewFilter() : filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)), seccomp_release)
    {
        if (!filter ||
            seccomp_attr_set(filter.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS))
            failure = ENOMEM;
    }
    void Allow(int call, std::initializer_list<scmp_arg_cmp> arguments = {})
    {
        if (failure != 0)
            return;
        const int result =
            seccomp_rule_add_array(filter.get(), SCMP_ACT_ALLOW, call,
                                   static_cast<unsigned>(arguments.size()), arguments.begin());
        failure = result < 0 ? -result : 0;
    }
    /// 0, or an error number.
    int Load() { return failure != 0 ? failure : -seccomp_load(filter.get()); }

private:
    std::unique_ptr<void, void (*)(scmp_filter_ctx)> filter;
    int failure = 0;
};

scmp_arg_cmp Is(unsigned argument, uint64_t value)
{
    return {argument, SCMP_CMP_EQ, value, 0};
}

scmp_arg_cmp HasBits(unsigned argument, uint64_t mask, uint64_t value)
{
    return {argument, SCMP_CMP_MASKED_EQ, mask, value};
}

/// A file that is opened for writing has Landlock's leave to be written. Older kernels do not ask it whether a file
/// may be truncated, which is also done to one that is opened for reading, or for neither.
void AllowOpening(NewFilter& filter, int call, unsigned flags)
{
    filter.Allow(call, {HasBits(flags, O_ACCMODE | O_TRUNC, O_RDONLY)});
    filter.Allow(call, {HasBits(flags, O_ACCMODE, O_WRONLY)});
    filter.Allow(call, {HasBits(flags, O_ACCMODE, O_RDWR)});
}

void AllowSomeArguments(NewFilter& filter, int socket)
{
    AllowOpening(filter, SCMP_SYS(open), 1);
    AllowOpening(filter, SCMP_SYS(openat), 2);
    filter.Allow(SCMP_SYS(mmap), {HasBits(2, PROT_EXEC, 0)});
    filter.Allow(SCMP_SYS(mprotect), {HasBits(2, PROT_EXEC, 0)});
    for (const uint64_t command : {uint64_t{F_GETFD}, uint64_t{F_SETFD}, uint64_t{F_GETFL}})
        filter.Allow(SCMP_SYS(fcntl), {Is(1, command)});
    filter.Allow(SCMP_SYS(ftruncate), {Is(0, STDERR_FILENO)}); // a file in memory of its own
    filter.Allow(SCMP_SYS(tgkill), {Is(0, static_cast<uint64_t>(getpid()))}); // for abort
    if (socket < 0)
        return;
    filter.Allow(SCMP_SYS(sendto), {Is(0, static_cast<uint64_t>(socket))});
    filter.Allow(SCMP_SYS(recvfrom), {Is(0, static_cast<uint64_t>(socket))});
}

} // namespace

bool KernelFiltersCalls()
{
    uint32_t action = SECCOMP_RET_ERRNO;
    return syscall(SYS_seccomp, SECCOMP_GET_ACTION_AVAIL, 0, &action) == 0;
}

std::string FilterCalls(int socket)
{
    NewFilter filter;
    for (const int call : kFreeCalls)
        filter.Allow(call);
    AllowSomeArguments(filter, socket);
    const int failure = filter.Load();
    return failure == 0 ? "" : std::string("the filter of system calls: ") + std::strerror(failure);
}
