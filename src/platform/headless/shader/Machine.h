#pragma once

#include "platform/headless/shader/Program.h"

#include <span>

namespace headless::shader {

/// The constants of a device, for one kind of shader.
struct Constants {
    std::span<const float> floats; ///< four for each register
    std::span<const int> ints;     ///< four for each register
    std::span<const int> bools;
};

/// Runs a program on groups of four vertices or pixels.
class Machine {
public:
    Machine();

    /// Loads the constants for the runs that follow; `program` outlives them. Reads of constants
    /// beyond `constants` give 0.
    void Prepare(Program& program, const Constants& constants);

    /// Runs the program once on `groupCount` groups, whose inputs have been written. Results are in
    /// the registers afterwards.
    void Run(int groupCount);

    /// Whether runs take eight lanes at a time where they can, which gives the same bits; only with
    /// HasEightForms, which is the default.
    void UseEight(bool isWanted) { isEight = isWanted; }
    bool IsEight() const { return isEight; }

    /// Where component x of group 0 of a register is; the other components follow at
    /// `kMaxGroups` each.
    Lanes* At(uint32_t place) { return file + place; }

    const TextureUnit* units[kMaxSamplers] = {}; ///< null reads black
    StageValues stages[kMaxSamplers];
    uint64_t work = 0; ///< steps run so far, times groups

    // What operations work on.

    void Store(const Operation& operation, int group, const Lanes* results);
    /// Recomputes which lanes run from the conditions, loops and calls around them.
    void SetActive();
    bool AnyActive() const;
    bool Truth(const Operation& operation) const;
    /// The three numbers of a whole constant.
    const int* Whole(uint32_t number) const;

    struct LoopFrame {
        int left;
        int index;
        int step;
        size_t start;
        Lanes alive[kMaxGroups];
    };
    struct CallFrame {
        size_t next;
        Lanes alive[kMaxGroups];
    };
    struct BlockFrame {
        Lanes condition[kMaxGroups];
    };

    Program* program = nullptr; ///< not owned
    Lanes* file = nullptr;      ///< not owned, the program's registers
    int groups = 0;
    bool isMasked = false; ///< some lanes do not run
    size_t next = 0;       ///< the operation to run next
    Lanes active[kMaxGroups];
    Lanes condition[kMaxGroups];
    Lanes loopAlive[kMaxGroups];
    Lanes callAlive[kMaxGroups];
    Lanes running[kMaxGroups]; ///< has not reached the limit of instructions
    IntLanes executed[kMaxGroups];
    int blockCount = 0, loopCount = 0, callCount = 0;
    BlockFrame blocks[kMaxOpenBlocks];
    LoopFrame loops[kMaxOpenLoops];
    CallFrame calls[kMaxOpenCalls];

private:
    template <RunFunction Operation::*Form>
    void RunStraight();
    template <RunFunction Operation::*Form>

    void RunFlow();
    void Count();
    void SetConstant(const ConstantUse& use, size_t component, float value);

    bool isEight;
    Constants values;
};

} // namespace headless::shader
