// Temporaries for values, by the time from the first write to the last read.

#include "platform/headless/d3dx/language/HlMachineCode.h"

#include <algorithm>
#include <array>

namespace headless::hl {

namespace {

/// Times of one virtual register: reads at twice the number of their instruction, writes one later.
struct Life {
    int begin = -1;
    std::array<int, 4> end = {-1, -1, -1, -1};
};

struct Loop {
    int begin, end;
};

class Assigner {
public:
    explicit Assigner(HlMachineCode& target) : code(target), lives(target.registers.size()) {}

    unsigned Run();

private:
    void FindLoops();
    void Measure();
    void Stretch();
    void Read(const HlInstruction& instruction, int time);
    bool TryPlace(uint32_t number, unsigned place);

    HlMachineCode& code;
    std::vector<Life> lives;
    std::vector<Loop> loops;
    std::vector<std::array<int, 4>> busyUntil;
};

void Assigner::FindLoops()
{
    std::vector<int> open;
    for (size_t i = 0; i < code.instructions.size(); ++i) {
        const int time = static_cast<int>(i) * 2;
        if (code.instructions[i].opcode == shader::Opcode::Rep)
            open.push_back(time);
        if (code.instructions[i].opcode == shader::Opcode::EndRep) {
            loops.push_back({open.back(), time});
            open.pop_back();
        }
    }
    std::sort(loops.begin(), loops.end(),
              [](const Loop& a, const Loop& b) { return a.end < b.end; });
}

void Assigner::Read(const HlInstruction& instruction, int time)
{
    for (const HlSource& source : instruction.sources) {
        if (source.kind != HlRegister::Virtual)
            continue;
        Life& life = lives[source.number];
        for (const uint8_t component : source.component)
            life.end[component] =
                std::max(life.end[component], time + (instruction.keepsSources ? 2 : 0));
    }
}

void Assigner::Measure()
{
    for (size_t i = 0; i < code.instructions.size(); ++i) {
        const HlInstruction& instruction = code.instructions[i];
        const int time = static_cast<int>(i) * 2;
        Read(instruction, time);
        if (instruction.kind != HlRegister::Virtual)
            continue;
        Life& life = lives[instruction.number];
        life.begin = life.begin < 0 ? time + 1 : life.begin;
        for (unsigned c = 0; c < 4; ++c)
            if ((instruction.mask >> c & 1) != 0)
                life.end[c] = std::max(life.end[c], time + 1);
    }
}

/// What a loop reads, but was written before it, is needed in all rounds.
void Assigner::Stretch()
{
    for (Life& life : lives)
        for (const Loop& loop : loops) // inner ones first
            for (int& end : life.end)
                if (life.begin >= 0 && life.begin < loop.begin && end > loop.begin &&
                    end < loop.end)
                    end = loop.end;
}

bool Assigner::TryPlace(uint32_t number, unsigned place)
{
    HlVirtual& target = code.registers[number];
    const Life& life = lives[number];
    std::array<int, 4>& busy = busyUntil[place];
    if (target.floats) {
        for (unsigned c = 4;
             c-- > 0;) // the last ones first: values of several components begin at x
            if (busy[c] < life.begin) {
                target.place = place;
                target.component = c;
                busy[c] = *std::max_element(life.end.begin(), life.end.end());
                return true;
            }
        return false;
    }
    const unsigned mask = target.mask;
    for (unsigned c = 0; c < 4; ++c)
        if ((mask >> c & 1) != 0 && busy[c] >= life.begin)
            return false;
    target.place = place;
    for (unsigned c = 0; c < 4; ++c)
        if ((mask >> c & 1) != 0)
            busy[c] = std::max(life.end[c], life.begin);
    return true;
}

unsigned Assigner::Run()
{
    FindLoops();
    Measure();
    Stretch();
    std::vector<uint32_t> order;
    for (uint32_t i = 0; i < lives.size(); ++i)
        if (lives[i].begin >= 0)
            order.push_back(i);
    std::stable_sort(order.begin(), order.end(),
                     [&](uint32_t a, uint32_t b) { return lives[a].begin < lives[b].begin; });
    for (const uint32_t number : order) {
        unsigned place = 0;
        while (place < busyUntil.size() && !TryPlace(number, place))
            ++place;
        if (place == busyUntil.size()) {
            busyUntil.push_back({-1, -1, -1, -1});
            TryPlace(number, place);
        }
    }
    return static_cast<unsigned>(busyUntil.size());
}

/// A copy whose value and target have come to the same place.
bool IsIdle(const HlMachineCode& code, const HlInstruction& instruction)
{
    if (instruction.opcode != shader::Opcode::Mov || instruction.kind != HlRegister::Virtual ||
        instruction.saturates || instruction.sources[0].kind != HlRegister::Virtual ||
        instruction.sources[0].isNegative)
        return false;
    const HlSource& source = instruction.sources[0];
    const HlVirtual& from = code.registers[source.number];
    const HlVirtual& to = code.registers[instruction.number];
    const unsigned mask = to.floats ? 1u << to.component : instruction.mask;
    bool isIdle = from.place == to.place;
    for (unsigned c = 0; c < 4; ++c)
        isIdle = isIdle && ((mask >> c & 1) == 0 ||
                            (from.floats ? from.component : source.component[c]) == c);
    return isIdle;
}

} // namespace

unsigned HlAssignRegisters(HlMachineCode& code)
{
    const unsigned count = Assigner(code).Run();
    std::erase_if(code.instructions,
                  [&](const HlInstruction& instruction) { return IsIdle(code, instruction); });
    return count;
}

} // namespace headless::hl
