// The calls have no wrappers in the C library, and the rights of newer kernels are not in the headers of older
// systems, so their numbers are here. They are the same for all processors.

#include "batch/LandlockRules.h"

#include <cerrno>
#include <cstdint>
#include <cstring>

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "batch/Descriptor.h"

namespace {

constexpr long kCreateRuleset = 444; // system calls
constexpr long kAddRule = 445;
constexpr long kRestrictSelf = 446;
constexpr unsigned kAskVersion = 1;  // flag of the first one
constexpr unsigned kPathBeneath = 1; // kind of a rule
constexpr uint64_t kWriteFile = 1u << 1;
constexpr uint64_t kReadFile = 1u << 2;
constexpr uint64_t kReadDirectory = 1u << 3;
constexpr uint64_t kRemoveFile = 1u << 5;
constexpr uint64_t kMakeDirectory = 1u << 7;
constexpr uint64_t kMakeFile = 1u << 8;
constexpr uint64_t kTruncate = 1u << 14; // from version 3 on
constexpr uint64_t kReading = kReadFile | kReadDirectory;
constexpr uint64_t kWriting = kReading | kWriteFile | kRemoveFile | kMakeDirectory | kMakeFile;

/// So many of the lowest bits.
constexpr uint64_t LowBits(int count)
{
    return (uint64_t{1} << count) - 1;
}

/// What a set of rules refuses unless a rule allows it.
struct Ruleset {
    uint64_t files;
    uint64_t network;
    uint64_t scopes;
};

struct [[gnu::packed]] PathRule {
    uint64_t allowed;
    int32_t directory;
};

/// All rights that a version knows.
Ruleset AllRightsOf(int version)
{
    constexpr int kFirst = 13; // run, write, read, list, remove and make each kind
    const int fileRights = kFirst + (version >= 2) /* move */ + (version >= 3) /* truncate */ +
                           (version >= 5) /* control devices */;
    return {LowBits(fileRights), version >= 4 ? LowBits(2) : 0, version >= 6 ? LowBits(2) : 0};
}

bool Allow(const Descriptor& rules, const std::string& path, uint64_t rights)
{
    const Descriptor directory(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!directory.IsOpen())
        return false;
    const PathRule rule = {rights, directory.Get()};
    return syscall(kAddRule, rules.Get(), kPathBeneath, &rule, 0) == 0;
}

std::string WhyNot(const std::string& what)
{
    return what + ": " + std::strerror(errno);
}

} // namespace

int LandlockVersion()
{
    const long version = syscall(kCreateRuleset, nullptr, 0, kAskVersion);
    return version > 0 ? static_cast<int>(version) : 0;
}

std::string LimitFiles(const std::vector<std::string>& readable,
                       const std::vector<std::string>& writable, int version)
{
    const Ruleset refused = AllRightsOf(version);
    // Older kernels take the longer record, as what they do not know is 0 in it.
    const Descriptor rules(static_cast<int>(syscall(kCreateRuleset, &refused, sizeof refused, 0)));
    if (!rules.IsOpen())
        return WhyNot("rules");
    for (const std::string& path : readable) {
        if (!Allow(rules, path, kReading) && errno != ENOENT)
            return WhyNot(path);
    }
    const uint64_t writing = kWriting | (version >= 3 ? kTruncate : 0);
    for (const std::string& path : writable) {
        if (!Allow(rules, path, writing))
            return WhyNot(path);
    }
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || syscall(kRestrictSelf, rules.Get(), 0) != 0)
        return WhyNot("Landlock");
    return "";
}
