// Random programs give, bit by bit, what plain C++ computes one number after the other: the operations work
// on four or eight pixels at a time, with instructions of the processor where it has them.

#include "platform/headless/shader/Kernels.h"
#include "tests/platform/headless_shader/ShaderRun.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace headless::shader {

namespace {

constexpr size_t kRegisters = 4;

struct RandomSource {
    size_t number;
    size_t component[4];
    bool isNegative;
    bool isAbsolute;
};

struct RandomStep {
    size_t kind;
    size_t result;
    unsigned mask;
    bool isSaturated;
    RandomSource sources[3];
};

enum class Reads { Each, First, Dot3, Dot4 };

/// An instruction, how it reads its sources, and what it computes of one component of each.
struct Kind {
    const char* name;
    int sources;
    Reads reads;
    float (*compute)(float a, float b, float c);
};

constexpr Kind kKinds[] = {
    {"mov", 1, Reads::Each, [](float a, float, float) { return a; }},
    {"add", 2, Reads::Each, [](float a, float b, float) { return a + b; }},
    {"sub", 2, Reads::Each, [](float a, float b, float) { return a - b; }},
    {"mul", 2, Reads::Each, [](float a, float b, float) { return a * b; }},
    {"mad", 3, Reads::Each,
     [](float a, float b, float c) {
         const float product = a * b;
         return product + c;
     }},
    {"min", 2, Reads::Each, [](float a, float b, float) { return a < b ? a : b; }},
    {"max", 2, Reads::Each, [](float a, float b, float) { return a > b ? a : b; }},
    {"cmp", 3, Reads::Each, [](float a, float b, float c) { return a >= 0.0f ? b : c; }},
    {"lrp", 3, Reads::Each,
     [](float a, float b, float c) {
         const float difference = b - c, product = a * difference;
         return product + c;
     }},
    {"frc", 1, Reads::Each,
     [](float a, float, float) {
         const float whole = std::floor(a) + 0.0f; // the whole part of -0 is 0
         return a - whole;
     }},
    {"rcp", 1, Reads::First, [](float a, float, float) { return 1.0f / a; }},
    {"rsq", 1, Reads::First, [](float a, float, float) { return 1.0f / std::sqrt(std::fabs(a)); }},
    {"dp3", 2, Reads::Dot3, nullptr},
    {"dp4", 2, Reads::Dot4, nullptr},
};

constexpr float kOddities[] = {
    0.0f,     -0.0f,         1.0f,      -1.0f,      0.5f,
    1e-45f,   -1e-40f,       FLT_MIN,   8388609.0f, FLT_MAX,
    -FLT_MAX, 2147483648.0f, kInfinity, -kInfinity, std::numeric_limits<float>::quiet_NaN()};

class RandomProgram {
public:
    explicit RandomProgram(uint32_t seed) : source(seed)
    {
        steps.resize(1 + Below(12));
        for (RandomStep& step : steps) {
            step.kind = Below(std::size(kKinds));
            step.result = Below(kRegisters);
            step.mask = 1 + Below(15);
            step.isSaturated = Below(5) == 0;
            for (RandomSource& from : step.sources)
                from = MakeSource(kKinds[step.kind].reads == Reads::First);
        }
        for (auto& values : inputs)
            for (Four& lane : values)
                for (float& value : lane)
                    value = Below(6) == 0 ? kOddities[Below(std::size(kOddities))]
                                          : static_cast<float>(Below(1u << 24)) / 1048576.0f - 8.0f;
    }

    /// Moves the inputs to r0.. and then runs the steps; r0 is the result.
    std::string Text() const
    {
        std::string text = "ps_3_0\n", moves;
        for (size_t i = 0; i < kRegisters; ++i) {
            text += "dcl_texcoord" + std::to_string(i) + " v" + std::to_string(i) + "\n";
            moves += "mov r" + std::to_string(i) + ", v" + std::to_string(i) + "\n";
        }
        text += moves;
        for (const RandomStep& step : steps)
            text += TextOf(step);
        return text + "mov oC0, r0\n";
    }

    /// What the program leaves in r0.
    Four Result(size_t lane) const
    {
        Four registers[kRegisters];
        for (size_t i = 0; i < kRegisters; ++i)
            registers[i] = inputs[i][lane];
        for (const RandomStep& step : steps)
            Run(step, registers);
        return registers[0];
    }

    std::array<Four, 8> inputs[kRegisters];

private:
    unsigned Below(size_t count) { return static_cast<unsigned>(source() % count); }

    RandomSource MakeSource(bool isScalar)
    {
        RandomSource made = {Below(kRegisters), {}, Below(3) == 0, Below(5) == 0};
        const size_t first = Below(4);
        for (size_t& component : made.component)
            component = isScalar ? first : Below(4);
        return made;
    }

    static std::string TextOf(const RandomSource& from)
    {
        std::string text = (from.isNegative ? "-r" : "r") + std::to_string(from.number);
        text += from.isAbsolute ? "_abs." : ".";
        for (const size_t component : from.component)
            text += "xyzw"[component];
        return text;
    }

    static std::string TextOf(const RandomStep& step)
    {
        const Kind& kind = kKinds[step.kind];
        std::string text = std::string(kind.name) + (step.isSaturated ? "_sat r" : " r");
        text += std::to_string(step.result) + ".";
        for (size_t i = 0; i < 4; ++i)
            if ((step.mask >> i & 1) != 0)
                text += "xyzw"[i];
        for (int i = 0; i < kind.sources; ++i)
            text += ", " + TextOf(step.sources[i]);
        return text + "\n";
    }

    static float Read(const RandomSource& from, const Four* registers, size_t component)
    {
        const float value = registers[from.number][from.component[component]];
        const float size = from.isAbsolute ? std::fabs(value) : value;
        return from.isNegative ? -size : size;
    }

    static float Compute(const RandomStep& step, const Four* registers, size_t component)
    {
        const Kind& kind = kKinds[step.kind];
        const auto read = [&](int i, size_t at) { return Read(step.sources[i], registers, at); };
        if (kind.compute)
            return kind.compute(read(0, component), read(1, component), read(2, component));
        float sum = read(0, 0) * read(1, 0);
        for (size_t i = 1; i < (kind.reads == Reads::Dot3 ? 3u : 4u); ++i) {
            const float product = read(0, i) * read(1, i);
            sum = sum + product;
        }
        return sum;
    }

    static void Run(const RandomStep& step, Four* registers)
    {
        Four results = registers[step.result];
        for (size_t i = 0; i < 4; ++i) {
            if ((step.mask >> i & 1) == 0)
                continue;
            const float value = Compute(step, registers, i);
            const float held = value > 0.0f ? (value < 1.0f ? value : 1.0f) : 0.0f;
            results[i] = step.isSaturated ? held : value;
        }
        registers[step.result] = results;
    }

    std::mt19937 source;
    std::vector<RandomStep> steps;
};

/// Equal bits, or not a number in both: which one that is, the processor may choose.
bool AreSame(float a, float b)
{
    return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

} // namespace

TEST(ShaderRandomProgram, GivesTheBitsOfPlainCode)
{
    for (uint32_t seed = 0; seed < 1000; ++seed) {
        const RandomProgram program(seed);
        ShaderRun run(program.Text());
        for (Word i = 0; i < kRegisters; ++i)
            run.SetInput(5, i, program.inputs[i]);
        for (const bool isEight : {false, HasEightForms()}) {
            run.machine.UseEight(isEight);
            run.Run();
            for (int lane = 0; lane < 8; ++lane) {
                const Four expected = program.Result(static_cast<size_t>(lane));
                const Four actual = run.Colour(lane);
                for (size_t i = 0; i < 4; ++i)
                    ASSERT_TRUE(AreSame(actual[i], expected[i]))
                        << "seed " << seed << ", eight " << isEight << ", lane " << lane
                        << ", component " << i << ": " << actual[i] << " instead of " << expected[i]
                        << "\n"
                        << program.Text();
            }
        }
    }
}

} // namespace headless::shader
