#pragma once

#include <cstdint>

namespace faults {

/// Which process of a run has the fault: the one that was started, one that it forks, or one that it starts anew
/// from its own file.
enum class Role : int { kProgram, kChild, kWorker };

enum class Kind : int { kNone, kMemory, kRead, kWrite, kOpen, kRename, kClose };
constexpr int kKinds = 7;

enum class Manner : int {
    kOnce,      ///< the request with the number fails
    kFromThere, ///< it and all later ones
    kEachFirst, ///< every second one, so that each call that is repeated succeeds then
};

/// What shall fail. As text: five numbers in the order of the fields.
struct Order {
    Role role = Role::kProgram;
    Kind kind = Kind::kNone;
    Manner manner = Manner::kOnce;
    int64_t number = 0; ///< from 1
    int error = 0;      ///< of `errno`; 0 for a transfer of half of the bytes

    void Read(const char* text);
    /// Whether request `count` is one that fails.
    bool Hits(int64_t count) const;
};

/// What a run tells, in memory that it shares with the driver, which knows the layout.
struct Result {
    int64_t counts[kKinds]; ///< requests so far, by `Kind`
    int64_t hits;
    int64_t leakedBlocks;
    int64_t leakedBytes;
    int64_t leakedNumber; ///< of the first leaked one among the requests
    int64_t wastedCloses; ///< of descriptors that are not open
    int32_t role;         ///< 1: the process that has the fault began
    int32_t wasEndChecked;
    char hitPath[512];  ///< of the first call that failed
    char leftOpen[512]; ///< descriptors that are open at the end, but were not at the start
};

extern Order gOrder;
extern Result* gResult;
extern bool gIsArmed; ///< this process counts and fails

/// Maps the file that FAULTS_RESULT names; memory of its own without one.
void OpenResult();

} // namespace faults
