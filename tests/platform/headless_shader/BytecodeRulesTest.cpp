// A stream for each rule that refuses one, and its accepted neighbour.

#include "tests/platform/headless_shader/ShaderRun.h"

#include <gtest/gtest.h>

namespace headless::shader {

namespace {

/// A text that breaks one rule, the reason that is given, and the same text within the rule.
struct Rule {
    const char* reason;
    const char* broken;
    const char* kept;
};

constexpr Rule kOperandRules[] = {
    {"the instruction cannot write this register", "ps_2_0\nmov c0, c1\nmov oC0, c0",
     "ps_2_0\nmov r0, c1\nmov oC0, c0"},
    {"the instruction cannot write this register", "ps_2_0\nadd oC0, c0, c0",
     "ps_3_0\nadd oC0, c0, c0"},
    {"the instruction cannot write this register",
     "vs_2_0\ndcl_position v0\nmov a0.x, v0\nmov oPos, v0",
     "vs_2_0\ndcl_position v0\nmova a0.x, v0\nmov oPos, v0"},
    {"the instruction cannot write this register", "ps_1_1\ntex r0\nmov r0, c0",
     "ps_1_1\ntex t0\nmov r0, c0"},
    {"the instruction cannot read this register",
     "vs_1_1\ndcl_position v0\nmov r0, oPos\nmov oPos, v0",
     "vs_1_1\ndcl_position v0\nmov r0, v0\nmov oPos, v0"},
    {"the instruction cannot read this register", "ps_1_4\nmov r0, t0",
     "ps_1_4\ntexcrd r0.rgb, t0"},
    {"the instruction cannot read this register", "ps_2_0\ndcl t0\ntexld r0, t0, c0\nmov oC0, r0",
     "ps_2_0\ndcl t0\ndcl_2d s0\ntexld r0, t0, s0\nmov oC0, r0"},
    {"the instruction cannot read this register", "ps_2_x\nif c0\nendif\nmov oC0, c0",
     "ps_2_x\nif b0\nendif\nmov oC0, c0"},
    {"a register number is too high", "vs_2_0\ndcl_position v0\nmov r12, v0\nmov oPos, v0",
     "vs_2_0\ndcl_position v0\nmov r11, v0\nmov oPos, v0"},
    {"a register number is too high", "vs_2_x\ndcl_position v0\nadd oPos, v0, c256",
     "vs_2_sw\ndcl_position v0\nadd oPos, v0, c256"},
    {"a register number is too high", "vs_2_sw\ndcl_position v0\nm4x4 oPos, v0, c8189",
     "vs_2_sw\ndcl_position v0\nm4x4 oPos, v0, c8188"},
    {"a register number is too high", "ps_1_1\nmov r0, c8", "ps_1_1\nmov r0, c7"},
    {"the version cannot write these components alone", "ps_1_1\nmov r0.rg, c0",
     "ps_1_4\nmov r0.rg, c0"},
    {"a product of three rows writes x, y and z",
     "vs_1_1\ndcl_position v0\nm3x3 r0, v0, c0\nmov oPos, v0",
     "vs_1_1\ndcl_position v0\nm3x3 r0.xyz, v0, c0\nmov oPos, v0"},
    {"a product of two rows writes x and y",
     "vs_1_1\ndcl_position v0\nm3x2 r0.xyz, v0, c0\nmov oPos, v0",
     "vs_1_1\ndcl_position v0\nm3x2 r0.xy, v0, c0\nmov oPos, v0"},
    {"a product of four rows writes all components",
     "vs_1_1\ndcl_position v0\nm4x4 r0.xyz, v0, c0\nmov oPos, v0",
     "vs_1_1\ndcl_position v0\nm4x4 r0, v0, c0\nmov oPos, v0"},
    {"the instruction does not write w", "ps_2_0\ncrs r0, c0, c1\nmov oC0, c0",
     "ps_2_0\ncrs r0.xyz, c0, c1\nmov oC0, c0"},
    {"sincos writes x and y only", "ps_3_0\nsincos r0, c0.x\nmov oC0, c0",
     "ps_3_0\nsincos r0.xy, c0.x\nmov oC0, c0"},
    {"frc of vs 1.1 writes x and y only", "vs_1_1\ndcl_position v0\nfrc r0, v0\nmov oPos, v0",
     "vs_1_1\ndcl_position v0\nfrc r0.xy, v0\nmov oPos, v0"},
    {"the version cannot scale the result like this", "ps_2_0\nmov_x2 r0, c0\nmov oC0, c0",
     "ps_1_1\nmov_x2 r0, c0"},
    {"the version cannot scale the result like this", "ps_1_1\nmov_x8 r0, c0",
     "ps_1_4\nmov_x8 r0, c0"},
    {"the result cannot be saturated here", "vs_2_0\ndcl_position v0\nmov_sat oPos, v0",
     "vs_3_0\ndcl_position v0\ndcl_position o0\nmov_sat o0, v0"},
    {"a result modifier is not in this version", "ps_1_1\nmov_pp r0, c0",
     "ps_2_0\nmov_pp r0, c0\nmov oC0, r0"},
    {"an index is not a0 or aL", "vs_2_0\ndcl_position v0\nmov oPos, c[r0.x]",
     "vs_2_0\ndcl_position v0\nmov oPos, c[a0.x]"},
    {"the version cannot index this kind of register", "vs_2_0\ndcl_position v0\nmov oPos, v[a0.x]",
     "vs_3_0\ndcl_position v0\ndcl_position o0\nmov o0, v[a0.x]"},
    {"the version does not have this swizzle", "ps_2_0\nmov r0, c0.xxyy\nmov oC0, r0",
     "ps_2_x\nmov r0, c0.xxyy\nmov oC0, r0"},
    {"the version does not have this swizzle", "ps_1_1\nmov r0, c0.r", "ps_1_4\nmov r0, c0.r"},
    {"a scalar instruction reads one component", "ps_2_0\nrcp r0, c0\nmov oC0, r0",
     "ps_2_0\nrcp r0, c0.y\nmov oC0, r0"},
    {"the matrix of a product has no swizzle", "vs_1_1\ndcl_position v0\nm4x4 oPos, v0, c0.wzyx",
     "vs_1_1\ndcl_position v0\nm4x4 oPos, v0.wzyx, c0"},
    {"the version does not have this source modifier", "ps_2_0\nmov r0, c0_bx2\nmov oC0, r0",
     "ps_2_0\nmov r0, -c0\nmov oC0, r0"},
    {"the version does not have this source modifier", "vs_2_0\ndcl_position v0\nmov oPos, v0_abs",
     "vs_3_0\ndcl_position v0\ndcl_position o0\nmov o0, v0_abs"},
    {"the version does not have this source modifier", "ps_1_1\nmov r0, v0_x2",
     "ps_1_4\nmov r0, v0_x2"},
    {"the version does not have this source modifier", "ps_1_4\nmov r0, v0_dw",
     "ps_1_4\ntexld r0, t0_dw.xyw"},
    {"a constant of ps 1.x has no modifiers", "ps_1_1\nmov r0, -c0", "ps_1_4\nmov r0, -c0"},
    {"an instruction is predicated by something else than p0", "ps_3_0\n(r0.x) mov oC0, c0",
     "ps_3_0\nsetp_gt p0, c0, c1\n(p0.x) mov oC0, c0"},
    {"the instruction cannot be predicated",
     "ps_3_0\nsetp_gt p0, c0, c1\n(p0.x) setp_gt p0, c0, c1\nmov oC0, c0",
     "ps_3_0\nsetp_gt p0, c0, c1\nsetp_gt p0, c0, c1\nmov oC0, c0"},
    {"the predicate has no such swizzle", "ps_3_0\nsetp_gt p0, c0, c1\n(p0.xxyy) mov oC0, c0",
     "ps_3_0\nsetp_gt p0, c0, c1\n(p0.y) mov oC0, c0"},
};

constexpr Rule kDeclarationRules[] = {
    {"a value is defined for a register of another kind", "ps_2_0\ndef r0, 1, 2, 3, 4\nmov oC0, c0",
     "ps_2_0\ndef c0, 1, 2, 3, 4\nmov oC0, c0"},
    {"the version does not have this kind of register", "ps_2_0\ndefi i0, 1, 2, 3, 4\nmov oC0, c0",
     "ps_2_x\ndefi i0, 1, 2, 3, 4\nmov oC0, c0"},
    {"a register number is too high", "ps_2_0\ndef c32, 1, 2, 3, 4\nmov oC0, c0",
     "ps_2_0\ndef c31, 1, 2, 3, 4\nmov oC0, c0"},
    {"the version does not declare this kind of register", "ps_2_0\ndcl r0\nmov oC0, c0",
     "ps_2_0\ndcl v0\nmov oC0, c0"},
    {"a sampler is declared without a kind of texture", "ps_2_0\ndcl s0\nmov oC0, c0",
     "ps_2_0\ndcl_cube s0\nmov oC0, c0"},
    {"a constant is defined twice", "ps_2_0\ndef c0, 1, 2, 3, 4\ndef c0, 1, 2, 3, 4\nmov oC0, c0",
     "ps_2_0\ndef c0, 1, 2, 3, 4\ndef c1, 1, 2, 3, 4\nmov oC0, c0"},
    {"a register is declared twice", "ps_2_0\ndcl v0\ndcl v0\nmov oC0, v0",
     "ps_2_0\ndcl v0\ndcl v1\nmov oC0, v0"},
    {"a register is declared twice", "ps_3_0\ndcl_texcoord v0.xy\ndcl_texcoord1 v0.yz\nmov oC0, c0",
     "ps_3_0\ndcl_texcoord v0.xy\ndcl_texcoord1 v0.zw\nmov oC0, c0"},
    {"a usage is declared twice", "vs_1_1\ndcl_position v0\ndcl_position v1\nmov oPos, v0",
     "vs_1_1\ndcl_position v0\ndcl_position1 v1\nmov oPos, v0"},
    {"a declaration follows an instruction", "ps_2_0\nmov oC0, c0\ndcl v0",
     "ps_2_0\ndcl v0\nmov oC0, c0"},
    {"a register is read that is not declared", "ps_2_0\nmov oC0, v0",
     "ps_2_0\ndcl v0\nmov oC0, v0"},
    {"a register is read that is not declared", "ps_2_0\ndcl t0\ntexld r0, t0, s1\nmov oC0, r0",
     "ps_2_0\ndcl t0\ndcl_2d s1\ntexld r0, t0, s1\nmov oC0, r0"},
    {"a register is read before it is written", "ps_2_0\nmov r0.xy, c0\nmov oC0, r0",
     "ps_2_0\nmov r0.xy, c0\nmov r0.zw, c0\nmov oC0, r0"},
    {"a register is read before it is written",
     "ps_2_0\ndcl_volume s0\nmov r0.xy, c0\ntexld r0, r0, s0\nmov oC0, r0",
     "ps_2_0\ndcl_2d s0\nmov r0.xy, c0\ntexld r0, r0, s0\nmov oC0, r0"},
    {"a register is read before it is written",
     "ps_2_0\ndcl_2d s0\nmov r0.x, c0\ntexld r0, r0, s0\nmov oC0, r0",
     "ps_2_0\ndcl_1d s0\nmov r0.x, c0\ntexld r0, r0, s0\nmov oC0, r0"},
    {"a register is read before it is written", "ps_1_1\nmov r0, t0", "ps_1_1\ntex t0\nmov r0, t0"},
    {"a register is read before it is written",
     "ps_1_4\ntexcrd r1.rg, t0\nphase\ntexkill r1\nmov r0, c0",
     "ps_1_4\ntexcrd r1.rgb, t0\nphase\ntexkill r1\nmov r0, c0"},
    {"a register is read before it is written",
     "vs_2_0\ndcl_position v0\nsgn r0, r3, r1, r2\nmov oPos, v0",
     "vs_2_0\ndcl_position v0\nsgn r0, v0, r1, r2\nmov oPos, v0"},
    {"an output is written that is not declared",
     "vs_3_0\ndcl_position v0\ndcl_position o0\nmov o0, v0\nmov o1, v0",
     "vs_3_0\ndcl_position v0\ndcl_position o0\ndcl_color o1\nmov o0, v0\nmov o1, v0"},
    {"the position is not written completely", "vs_1_1\ndcl_position v0\nmov oPos.xyz, v0",
     "vs_1_1\ndcl_position v0\nmov oPos.xyz, v0\nmov oPos.w, v0"},
    {"r0, the result, is not written", "ps_1_1\nmov r1, c0", "ps_1_1\nmov r0.a, c0"},
    {"oC0 is not written completely", "ps_2_0\nmov r0, c0", "ps_2_0\nmov oC0, c0"},
};

constexpr Rule kOrderRules[] = {
    {"a texture instruction follows an arithmetic one", "ps_1_1\nmov r0, c0\ntex t0",
     "ps_1_1\ntex t0\nmov r0, c0"},
    {"a texture instruction follows an arithmetic one", "ps_1_4\nmov r0, c0\ntexld r1, t0",
     "ps_1_4\nmov r0, c0\nphase\ntexld r1, t0"},
    {"a second phase begins", "ps_1_4\nmov r0, c0\nphase\nphase\nmov r0, c0",
     "ps_1_4\nmov r0, c0\nphase\nmov r0, c0"},
    {"a paired instruction has no partner", "ps_1_1\n+mov r0, c0", "ps_1_1\nmov r0, c0"},
    {"a pair does not write colour and alpha apart", "ps_1_1\nmov r0, c0\n+mov r0.a, c0",
     "ps_1_1\nmov r0.rgb, c0\n+mov r0.a, c0"},
    {"texture matrix instructions are out of order",
     "ps_1_1\ntex t0\ntexm3x2pad t1, t0\ntexm3x2tex t3, t0\nmov r0, c0",
     "ps_1_1\ntex t0\ntexm3x2pad t1, t0\ntexm3x2tex t2, t0\nmov r0, c0"},
    {"texture matrix instructions are out of order",
     "ps_1_1\ntex t0\ntexm3x2pad t1, t0\nmov r0, c0", "ps_1_1\ntex t0\nmov r0, c0"},
    {"texture matrix instructions are out of order",
     "ps_1_1\ntex t0\ntexm3x3pad t1, t0\ntexm3x2tex t2, t0\nmov r0, c0",
     "ps_1_1\ntex t0\ntexm3x3pad t1, t0\ntexm3x3pad t2, t0\ntexm3x3tex t3, t0\nmov r0, c0"},
    {"there are more instructions than the version allows",
     "ps_1_1\ntex t0\ntex t1\ntex t2\ntex t3\ntexkill t0\nmov r0, c0",
     "ps_1_1\ntex t0\ntex t1\ntex t2\ntex t3\nmov r0, c0"},
};

constexpr Rule kFlowRules[] = {
    {"a block is not closed", "ps_3_0\nif b0\nmov oC0, c0", "ps_3_0\nif b0\nendif\nmov oC0, c0"},
    {"else without if", "ps_3_0\nelse\nmov oC0, c0", "ps_3_0\nif b0\nelse\nendif\nmov oC0, c0"},
    {"else without if", "ps_3_0\nif b0\nelse\nelse\nendif\nmov oC0, c0",
     "ps_3_0\nif b0\nelse\nendif\nmov oC0, c0"},
    {"endif without if", "ps_3_0\nrep i0\nendif\nmov oC0, c0",
     "ps_3_0\nrep i0\nendrep\nmov oC0, c0"},
    {"endrep without rep", "ps_3_0\nif b0\nendrep\nmov oC0, c0",
     "ps_3_0\nif b0\nendif\nmov oC0, c0"},
    {"endloop without loop", "ps_3_0\nrep i0\nendloop\nmov oC0, c0",
     "ps_3_0\nloop aL, i0\nendloop\nmov oC0, c0"},
    {"break outside a loop", "ps_3_0\nif b0\nbreak\nendif\nmov oC0, c0",
     "ps_3_0\nrep i0\nif b0\nbreak\nendif\nendrep\nmov oC0, c0"},
    {"loops are nested too deep",
     "ps_3_0\nrep i0\nrep i0\nrep i0\nrep i0\nrep i0\nendrep\nendrep\nendrep\nendrep\nendrep\nmov oC0, c0",
     "ps_3_0\nrep i0\nrep i0\nrep i0\nrep i0\nendrep\nendrep\nendrep\nendrep\nmov oC0, c0"},
    {"aL is used outside a loop", "vs_2_0\ndcl_position v0\nloop aL, i0\nendloop\nmov oPos, c[aL]",
     "vs_2_0\ndcl_position v0\nloop aL, i0\nmov oPos, c[aL]\nendloop"},
    {"a call has no label", "ps_3_0\ncall l1\nmov oC0, c0\nret\nlabel l0\nret",
     "ps_3_0\ncall l0\nmov oC0, c0\nret\nlabel l0\nret"},
    {"a call leads backward", "ps_3_0\nmov oC0, c0\nret\nlabel l0\nret\nlabel l1\ncall l0\nret",
     "ps_3_0\nmov oC0, c0\nret\nlabel l1\ncall l0\nret\nlabel l0\nret"},
    {"a call leads backward", "ps_3_0\nmov oC0, c0\nret\nlabel l0\ncall l0\nret",
     "ps_3_0\nmov oC0, c0\nret\nlabel l0\nret"},
    {"calls are nested too deep",
     "vs_2_0\ndcl_position v0\ncall l0\nmov oPos, v0\nret\nlabel l0\ncall l1\nret\nlabel l1\nret",
     "vs_2_x\ndcl_position v0\ncall l0\nmov oPos, v0\nret\nlabel l0\ncall l1\nret\nlabel l1\nret"},
    {"a label occurs twice", "ps_3_0\nmov oC0, c0\nret\nlabel l0\nret\nlabel l0\nret",
     "ps_3_0\nmov oC0, c0\nret\nlabel l0\nret\nlabel l1\nret"},
    {"a label does not follow a ret", "ps_3_0\nmov oC0, c0\nlabel l0\nret",
     "ps_3_0\nmov oC0, c0\nret\nlabel l0\nret"},
    {"a subroutine does not end with ret", "ps_3_0\nmov oC0, c0\nret\nlabel l0\nnop",
     "ps_3_0\nmov oC0, c0\nret\nlabel l0\nnop\nret"},
    {"an instruction follows the last ret", "ps_3_0\nmov oC0, c0\nret\nnop",
     "ps_3_0\nmov oC0, c0\nret"},
};

void ExpectRules(std::span<const Rule> rules)
{
    for (const Rule& rule : rules) {
        EXPECT_EQ(RefusalOf(rule.broken), rule.reason) << rule.broken;
        EXPECT_EQ(RefusalOf(rule.kept), "") << rule.kept;
    }
}

std::string Repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

std::string ReasonOf(const std::vector<Word>& words)
{
    Bytecode code;
    Fault fault;
    if (ReadBytecode(words, code, fault))
        CheckBytecode(code, fault);
    return fault.reason;
}

constexpr Word kPs20 = 0xFFFF0200, kPs30 = 0xFFFF0300, kPs11 = 0xFFFF0101;
constexpr Word kMovOut[] = {0x02000001, 0x800F0800, 0xA0E40000}; // mov oC0, c0

std::vector<Word> Stream(Word version, std::vector<Word> words, bool ends = true)
{
    words.insert(words.begin(), version);
    words.insert(words.end(), std::begin(kMovOut), std::end(kMovOut));
    if (ends)
        words.push_back(kEndWord);
    return words;
}

} // namespace

TEST(BytecodeRules, Operands)
{
    ExpectRules(kOperandRules);
}

TEST(BytecodeRules, Declarations)
{
    ExpectRules(kDeclarationRules);
}

TEST(BytecodeRules, Order)
{
    ExpectRules(kOrderRules);
}

TEST(BytecodeRules, Flow)
{
    ExpectRules(kFlowRules);
}

TEST(BytecodeRules, NestedBlocks)
{
    const auto nested = [](int depth) {
        return "ps_3_0\n" + Repeated("if b0\n", depth) + Repeated("endif\n", depth) + "mov oC0, c0";
    };
    EXPECT_EQ(RefusalOf(nested(24)), "");
    EXPECT_EQ(RefusalOf(nested(25)), "blocks are nested too deep");
}

TEST(BytecodeRules, NestedCalls)
{
    const auto nested = [](int depth) { // one calls the next one
        std::string text = "vs_2_x\ndcl_position v0\nmov oPos, v0\n";
        for (int i = 0; i < depth; ++i)
            text += "call l" + std::to_string(i) + "\nret\nlabel l" + std::to_string(i) + "\n";
        return text + "ret";
    };
    EXPECT_EQ(RefusalOf(nested(4)), "");
    EXPECT_EQ(RefusalOf(nested(5)), "calls are nested too deep");
}

TEST(BytecodeRules, NumbersOfInstructions)
{
    const char* const kReason = "there are more instructions than the version allows";
    const struct {
        const char* before;
        const char* one;
        int most;
        const char* after;
        int last; ///< slots of `after`
    } cases[] = {
        {"vs_1_1\ndcl_position v0\n", "mov r0, v0\n", 128, "mov oPos, v0", 1},
        {"vs_2_0\ndcl_position v0\n", "mov r0, v0\n", 256, "mov oPos, v0", 1},
        {"vs_2_0\ndcl_position v0\n", "m4x4 r0, v0, c0\n", 64, "mov oPos, v0", 1},
        {"ps_1_1\n", "mov r0, c0\n", 8, "", 0},
        {"ps_2_0\n", "mov r0, c0\n", 64, "mov oC0, c0", 1},
        {"ps_2_x\n", "mov r0, c0\n", 512, "mov oC0, c0", 1},
        {"ps_3_0\n", "mov r0, c0\n", 32768, "mov oC0, c0", 1},
    };
    for (const auto& row : cases) {
        const bool isMatrix = std::string(row.one).starts_with("m4x4");
        const int most = isMatrix ? row.most - 1 : row.most - row.last;
        EXPECT_EQ(RefusalOf(row.before + Repeated(row.one, most) + row.after), "") << row.before;
        EXPECT_EQ(RefusalOf(row.before + Repeated(row.one, most + 1) + row.after), kReason)
            << row.before;
    }
    const struct {
        const char* before;
        const char* one;
        int most;
        const char* after;
    } others[] = {
        {"vs_2_x\ndcl_position v0\nmov oPos, v0\n", "mov r0, v0\n", 255, ""},
        {"vs_3_0\ndcl_position v0\ndcl_position o0\nmov o0, v0\n", "mov r0, v0\n", 32767, ""},
        {"ps_1_4\n", "texcrd r1.rgb, t0\n", 6, "mov r0, c0"},
        {"ps_1_4\n", "mov r0, c0\n", 8, ""},
        {"ps_1_4\ntexcrd r1.rgb, t0\nphase\n", "texcrd r1.rgb, t0\n", 6, "mov r0, c0"},
        {"ps_1_4\nmov r0, c0\nphase\n", "mov r0, c0\n", 8, ""},
        {"ps_2_0\ndcl t0\ndcl_2d s0\n", "texld r0, t0, s0\n", 32, "mov oC0, c0"},
    };
    for (const auto& row : others) {
        EXPECT_EQ(RefusalOf(row.before + Repeated(row.one, row.most) + row.after), "")
            << row.before;
        EXPECT_EQ(RefusalOf(row.before + Repeated(row.one, row.most + 1) + row.after), kReason)
            << row.before;
    }
    EXPECT_EQ(RefusalOf("ps_2_sw\n" + Repeated("mov r0, c0\n", 600) + "mov oC0, c0"), "");
    // Pairs count once.
    EXPECT_EQ(RefusalOf("ps_1_1\n" + Repeated("mov r0.rgb, c0\n+mov r0.a, c0\n", 8)), "");
}

TEST(BytecodeRules, Versions)
{
    const char* const kReason = "the version is not one of vs 1.1 to 3.0 or ps 1.1 to 3.0";
    for (const Word word : {0xFFFE0100u, 0xFFFE0102u, 0xFFFE0202u, 0xFFFE0301u, 0xFFFE0400u,
                            0xFFFF0100u, 0xFFFF0105u, 0xFFFF0301u, 0xFFFF01FFu, 0xFFFD0200u, 0u})
        EXPECT_EQ(ReasonOf({word, kEndWord}), kReason) << std::hex << word;
    EXPECT_EQ(ReasonOf({}), kReason);
    for (const Word word : {0xFFFF0200u, 0xFFFF0201u, 0xFFFF02FFu, 0xFFFF0300u, 0xFFFF03FFu})
        EXPECT_EQ(ReasonOf(Stream(word, {})), "") << std::hex << word;
}

TEST(BytecodeRules, FormOfTheStream)
{
    EXPECT_EQ(ReasonOf(Stream(kPs20, {}, false)), "the stream has no end word");
    EXPECT_EQ(
        ReasonOf({kPs20, 0x0001FFFE, 0xFFFFFFFF, 0x02000001, 0x800F0800, 0xA0E40000, kEndWord}),
        ""); // a comment of one word
    EXPECT_EQ(ReasonOf({kPs20, 0x0009FFFE, kEndWord}), "a comment is longer than the stream");
    EXPECT_EQ(ReasonOf(Stream(kPs20, {0x80000000})), "a word is not an instruction");
    EXPECT_EQ(ReasonOf(Stream(kPs20, {0x00000061})), "a word is not an instruction");
    EXPECT_EQ(ReasonOf(Stream(kPs20, {0x0100001A})), "the version does not have the instruction");
    EXPECT_EQ(ReasonOf({kPs20, 0x02000001, 0x800F0800}), "the stream ends within an instruction");
    EXPECT_EQ(ReasonOf({kPs20, 0x02000001, 0x800F0800, kEndWord}), "a parameter is missing");
    EXPECT_EQ(ReasonOf({kPs20, 0x05000051, 0xA00F0000, 0, 0, 0}),
              "the stream ends within an instruction"); // def
    EXPECT_EQ(ReasonOf({kPs20, 0x03000001, 0x800F0800, 0xA0E40000, kEndWord}),
              "an instruction states a wrong length");
    EXPECT_EQ(ReasonOf(Stream(kPs20, {0x12000001, 0x800F0000, 0xA0E40000})),
              "the version has no predication");
    EXPECT_EQ(ReasonOf(Stream(kPs20, {0x02000001, 0x800F0000, 0xAEE40000})),
              "a source modifier is unknown");
    EXPECT_EQ(ReasonOf({0xFFFE0200, 0x03000001, 0x800F0000, 0xA0E42000, 0xB0002000, kEndWord}),
              "an index register is itself indexed");
}

TEST(BytecodeRules, FieldsThatTextCannotState)
{
    EXPECT_EQ(ReasonOf(Stream(kPs20, {0x02000001, 0x80000000, 0xA0E40000})),
              "no component is written");
    EXPECT_EQ(ReasonOf(Stream(kPs20, {0x02000001, 0x808F0000, 0xA0E40000})),
              "a result modifier is unknown");
    EXPECT_EQ(ReasonOf(Stream(kPs30, {0x02070029, 0xA0000000, 0xA0000000, 0x0000002B})),
              "a comparison is unknown"); // if with comparison 7
    EXPECT_EQ(ReasonOf({kPs20, 0x0200001F, 0x80000000, 0xB00F0000, 0x0200001F, 0x90000000,
                        0xA00F0800, 0x03030042, 0x800F0000, 0xB0E40000, 0xA0E40800, 0x02000001,
                        0x800F0800, 0x80E40000, kEndWord}),
              "the kind of a texture load is unknown");
    EXPECT_EQ(ReasonOf(Stream(kPs30, {0x0200001F, 0x8000000F, 0x900F0000})),
              "a declared usage is unknown");
    EXPECT_EQ(ReasonOf(Stream(kPs20, {0x0200001F, 0x80000000, 0x90000000})),
              "no component is declared");
    EXPECT_EQ(ReasonOf({kPs11, 0x00000001, 0x800F0000, 0xF0E40000, kEndWord}),
              "the instruction cannot read this register"); // a register kind of a later version
    EXPECT_EQ(ReasonOf(Stream(kPs30, {0x0300005E, 0xB00F1000, 0xA0E40000, 0xA0E40000, 0x13000002,
                                      0x800F0000, 0xB1E41000, 0xA0E40000, 0xA0E40000})),
              "an instruction states a wrong length");
    const std::vector<Word> setPredicate = {0x0301005E, 0xB00F1000, 0xA0E40000, 0xA0E40000};
    const auto predicated = [&](Word predicate) { // mov oC0, c0
        std::vector<Word> words = setPredicate;
        words.insert(words.end(), {0x13000001, 0x800F0800, predicate, 0xA0E40000});
        return ReasonOf(Stream(kPs30, words));
    };
    EXPECT_EQ(predicated(0xB1E41000), "the predicate has no such modifier"); // minus
    EXPECT_EQ(predicated(0xBDE41000), "");                                   // not
    EXPECT_EQ(predicated(0xB0E41000), "");
}

TEST(BytecodeRules, FaultsNameTheirPlace)
{
    Bytecode code;
    Fault fault;
    EXPECT_FALSE(ReadBytecode(std::vector<Word>{kPs20, 0x0001FFFE, 0, 0x00000061}, code, fault));
    EXPECT_EQ(fault.word, 3u);
    ASSERT_TRUE(ReadBytecode(Stream(kPs20, {0x02000001, 0x800F0000, 0x90E40000}), code, fault));
    EXPECT_FALSE(CheckBytecode(code, fault));
    EXPECT_EQ(fault.word, 1u);
}

TEST(BytecodeRules, LengthOfAStream)
{
    // The floats of def may look like an end word, and so may comments.
    const Word words[] = {kPs11,      0x00000051, 0xA00F0000, kEndWord, kEndWord,
                          kEndWord,   kEndWord,   0x0001FFFE, kEndWord, 0x00000001,
                          0x800F0000, 0xA0E40000, kEndWord,   7,        7};
    EXPECT_EQ(StreamWords(words), 13u);
    const Word later[] = {kPs20,    0x05000051, 0xA00F0000, kEndWord,
                          kEndWord, kEndWord,   kEndWord,   kEndWord};
    EXPECT_EQ(StreamWords(later), 8u);
    const Word none[] = {0x12345678};
    EXPECT_EQ(StreamWords(none), 0u);
    std::vector<Word> endless(kMaxWords, 0x80000000);
    endless[0] = kPs20;
    EXPECT_EQ(StreamWords(endless.data()), 0u);
}

} // namespace headless::shader
