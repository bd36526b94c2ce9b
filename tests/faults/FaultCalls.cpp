// Calls of the system: the kernel's filter turns those that come out of the C library's code into a signal, whose
// handler makes them itself, or lets them fail. The filter stays with a process that the program starts from a file,
// where the library is elsewhere, so that its calls pass.

#include "tests/faults/FaultCalls.h"

#include "tests/faults/FaultOrder.h"
#include "tests/faults/FaultTrace.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <iterator>

#include <dlfcn.h>
#include <fcntl.h>
#include <limits.h>
#include <link.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

namespace faults {

namespace {

constexpr int kMostDescriptors = 64;

struct CaughtCall {
    int number;
    Kind kind;
    int pathArgument; ///< -1: the first one is a descriptor
    int sizeArgument; ///< of a transfer that may be short; -1: none
};

constexpr CaughtCall kCaught[] = {
    {SYS_read, Kind::kRead, -1, 2},       {SYS_pread64, Kind::kRead, -1, 2},
    {SYS_readv, Kind::kRead, -1, -1},     {SYS_getdents64, Kind::kRead, -1, -1},
    {SYS_write, Kind::kWrite, -1, 2},     {SYS_pwrite64, Kind::kWrite, -1, 2},
    {SYS_writev, Kind::kWrite, -1, -1},   {SYS_open, Kind::kOpen, 0, -1},
    {SYS_openat, Kind::kOpen, 1, -1},     {SYS_rename, Kind::kRename, 1, -1},
    {SYS_renameat, Kind::kRename, 3, -1}, {SYS_renameat2, Kind::kRename, 3, -1},
    {SYS_close, Kind::kClose, -1, -1},
};

bool gWasOpen[kMostDescriptors];

/// Not by the C library, whose calls are caught.
long Call(long number, const long (&arguments)[6])
{
    long result = 0;
    register long r10 asm("r10") = arguments[3];
    register long r8 asm("r8") = arguments[4];
    register long r9 asm("r9") = arguments[5];
    asm volatile("syscall"
                 : "=a"(result)
                 : "a"(number), "D"(arguments[0]), "S"(arguments[1]), "d"(arguments[2]), "r"(r10),
                   "r"(r8), "r"(r9)
                 : "rcx", "r11", "memory");
    return result;
}

void NamePath(const CaughtCall& call, const long (&arguments)[6])
{
    char* const out = gResult->hitPath;
    if (call.pathArgument >= 0) {
        std::strncpy(out, reinterpret_cast<const char*>(arguments[call.pathArgument]),
                     sizeof gResult->hitPath - 1);
        return;
    }
    char link[40];
    std::snprintf(link, sizeof link, "/proc/self/fd/%ld", arguments[0]);
    const ssize_t length = readlink(link, out, sizeof gResult->hitPath - 1);
    out[length > 0 ? length : 0] = '\0';
    if (arguments[0] == STDERR_FILENO)
        std::strcpy(out, "<stderr>");
    else if (arguments[0] == STDOUT_FILENO)
        std::strcpy(out, "<stdout>");
}

long Fail(const CaughtCall& call, long (&arguments)[6])
{
    if (call.kind == Kind::kClose) {
        Call(call.number, arguments); // a descriptor is closed, whatever the call says
        return -gOrder.error;
    }
    if (gOrder.error != 0)
        return -gOrder.error;
    long& size = arguments[call.sizeArgument];
    size = size > 1 ? size / 2 : size;
    return Call(call.number, arguments);
}

long Follow(const CaughtCall& call, long (&arguments)[6])
{
    const int64_t count = ++gResult->counts[static_cast<int>(call.kind)];
    const bool canFail = gOrder.error != 0 || call.sizeArgument >= 0;
    if (gOrder.kind == call.kind && gOrder.Hits(count) && canFail) {
        if (++gResult->hits == 1)
            NamePath(call, arguments);
        TraceFault();
        return Fail(call, arguments);
    }
    const long result = Call(call.number, arguments);
    if (call.kind == Kind::kClose && result == -EBADF)
        ++gResult->wastedCloses;
    return result;
}

void OnCall(int, siginfo_t* info, void* context)
{
    greg_t* const registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    long arguments[6] = {registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                         registers[REG_R10], registers[REG_R8],  registers[REG_R9]};
    const int before = errno;
    long result = -ENOSYS;
    for (const CaughtCall& call : kCaught) {
        if (call.number == info->si_syscall)
            result = gIsArmed ? Follow(call, arguments) : Call(call.number, arguments);
    }
    registers[REG_RAX] = result;
    errno = before;
}

/// The code of the C library in memory.
struct CodeRange {
    uintptr_t begin = 0;
    uintptr_t end = 0;
};

int FindCode(dl_phdr_info* object, size_t, void* out)
{
    const auto inside = reinterpret_cast<uintptr_t>(dlsym(RTLD_NEXT, "openat"));
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr)& part = object->dlpi_phdr[i];
        const uintptr_t begin = object->dlpi_addr + part.p_vaddr;
        if (part.p_type == PT_LOAD && (part.p_flags & PF_X) && inside >= begin &&
            inside < begin + part.p_memsz)
            *static_cast<CodeRange*>(out) = {begin, begin + part.p_memsz};
    }
    return 0;
}

constexpr sock_filter Load(size_t offset)
{
    return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<uint32_t>(offset));
}

/// Goes on with the next line if the comparison holds, otherwise over `lines` of them.
constexpr sock_filter Unless(int comparison, uint32_t value, size_t lines)
{
    return BPF_JUMP(static_cast<uint16_t>(BPF_JMP | comparison | BPF_K), value, 0,
                    static_cast<uint8_t>(lines));
}

/// Goes over `lines` lines if the comparison holds.
constexpr sock_filter If(int comparison, uint32_t value, size_t lines)
{
    return BPF_JUMP(static_cast<uint16_t>(BPF_JMP | comparison | BPF_K), value,
                    static_cast<uint8_t>(lines), 0);
}

/// The filter is for addresses that differ in their low half only.
void CatchCallsOf(uintptr_t begin, uintptr_t end)
{
    constexpr size_t kCalls = std::size(kCaught);
    constexpr size_t kAddress = offsetof(seccomp_data, instruction_pointer);
    constexpr size_t kBefore = 6;
    const auto low = static_cast<uint32_t>(begin);
    sock_filter lines[kBefore + kCalls + 2] = {
        Load(kAddress + 4),
        Unless(BPF_JEQ, static_cast<uint32_t>(begin >> 32), 4 + kCalls),
        Load(kAddress),
        Unless(BPF_JGE, low, 2 + kCalls),
        If(BPF_JGT, static_cast<uint32_t>(end - 1), 1 + kCalls),
        Load(offsetof(seccomp_data, nr)),
    };
    for (size_t i = 0; i < kCalls; ++i)
        lines[kBefore + i] = If(BPF_JEQ, static_cast<uint32_t>(kCaught[i].number), kCalls - i);
    lines[kBefore + kCalls] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    lines[kBefore + kCalls + 1] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP);
    const sock_fprog program = {static_cast<unsigned short>(std::size(lines)), lines};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        _exit(126);
}

} // namespace

void BeginCalls()
{
    for (int i = 0; i < kMostDescriptors; ++i)
        gWasOpen[i] = fcntl(i, F_GETFD) >= 0;
    struct sigaction action = {};
    action.sa_sigaction = OnCall;
    action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_RESTART;
    sigaction(SIGSYS, &action, nullptr);
    CodeRange code;
    dl_iterate_phdr(FindCode, &code);
    const uintptr_t border = (code.begin | 0xFFFFFFFF) + 1;
    CatchCallsOf(code.begin, code.end < border ? code.end : border);
    if (code.end > border)
        CatchCallsOf(border, code.end);
}

void CheckDescriptors()
{
    size_t at = 0;
    for (int i = 0; i < kMostDescriptors; ++i) {
        if (gWasOpen[i] || fcntl(i, F_GETFD) < 0)
            continue;
        char link[40];
        std::snprintf(link, sizeof link, "/proc/self/fd/%d", i);
        char path[200];
        const ssize_t length = readlink(link, path, sizeof path);
        if (length <= 0 || at + static_cast<size_t>(length) + 2 > sizeof gResult->leftOpen)
            continue;
        std::memcpy(gResult->leftOpen + at, path, static_cast<size_t>(length));
        at += static_cast<size_t>(length);
        gResult->leftOpen[at++] = '\n';
        gResult->leftOpen[at] = '\0';
    }
}

} // namespace faults
