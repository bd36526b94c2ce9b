#include "platform/headless/shader/Assembler.h"

#include "platform/headless/shader/Disassembler.h"
#include "tests/platform/headless_shader/ShaderRun.h"

#include <gtest/gtest.h>

namespace headless::shader {

namespace {

using Words = std::vector<Word>;

std::string FaultOf(const std::string& text)
{
    Words words;
    AssemblyFault fault;
    if (Assemble(text, words, fault))
        return "";
    return "(" + std::to_string(fault.line) + "," + std::to_string(fault.column) + ") " +
           fault.reason;
}

/// Text of all kinds of things, each of which must come back from its words.
constexpr const char* kTexts[] = {
    "vs_1_1\n    dcl_position v0\n    dcl_texcoord3 v1.xy\n    def c0, 1, -0.5, 1e+30, 0\n"
    "    mov a0.x, v0.y\n    mad oT0.xy, -v1.wzyx, c[a0.x + 3], c0\n    mov oFog.x, v0.x\n"
    "    mov oPts.x, v0.x\n    mov oD1, c95\n    m4x4 oPos, v0, c4\n",
    "vs_2_x\n    dcl_position v0\n    defi i0, 4, 0, -1, 0\n    defb b1, true\n    defb b2, false\n"
    "    setp_ge p0.xy, v0, c0\n    (p0.x) add r0, v0, c1\n    (!p0) mov r1, v0\n    rep i0\n"
    "        if_ne r0.x, -c0.y\n            break_lt r0.x, c0.x\n        else\n            breakp !p0.x\n"
    "        endif\n    endrep\n    if !b1\n        call l3\n    endif\n    loop aL, i0\n"
    "        mov r2, c[aL + 7]\n    endloop\n    callnz l3, p0.y\n    mov oPos, v0\n    ret\nlabel l3\n"
    "    mova a0.zw, v0\n    mov r3, c[a0.w + 0]\n    ret\n",
    "vs_2_sw\n    dcl_position v0\n    add oPos, v0, c8191\n",
    "vs_3_0\n    dcl_position v0\n    dcl_2d s1\n    dcl_position o0\n    dcl_color1 o1.xyz\n"
    "    dcl_psize o2\n    texldl r0, v0, s1.yxzw\n    mov_sat o1.xyz, r0_abs\n"
    "    mov o[aL + 2], -r0_abs\n    mov o0, v0\n",
    "ps_1_1\n    def c2, 0.25, 0, 1, 1\n    tex t0\n    texcoord t1\n    texbem t2, t0\n    texkill t3\n"
    "    mul_x2_sat r0.xyz, t0_bx2, 1-v0\n    + mov_d2 r0.w, -v1_bias.w\n    lrp r0, v0.w, c2, r0\n",
    "ps_1_4\n    texcrd r0.xyz, t0\n    texld r1, t1_dw.xyw\n    mad_x8 r2, r1.x, c0, -r0_x2\nphase\n"
    "    texld r0, r2_dz\n    mov r0, r0\n",
    "ps_2_0\n    dcl t0.xy\n    dcl_pp v0\n    dcl_centroid t1\n    dcl_cube s3\n    dcl_volume s4\n"
    "    texldp_pp r0, t0, s3\n    texldb r1, t0, s4\n    sincos r2.xy, r0.x, c0, c1\n"
    "    dp2add r3, r0, r1, r0.x\n    mov oDepth, r0.x\n    mov_pp oC1, r1\n    mov oC0, r0.zyxw\n",
    "ps_3_0\n    dcl_texcoord2_centroid v0\n    dcl vPos.xy\n    dcl vFace\n    dcl_1d s0\n"
    "    texldd r0, v0, s0, vPos, c0.x\n    dsx r1, v0\n    dsy r2, -v0\n    cmp oC0, vFace, r0, r1\n",
};

} // namespace

TEST(ShaderAssembler, WritesThePublishedWords)
{
    // Opcode, length in bits 24 up, register kind in bits 28 up and 11 up, mask or swizzle in 16 up.
    EXPECT_EQ(WordsOf("ps_2_0\nmov oC0, c3"),
              (Words{0xFFFF0200, 0x02000001, 0x800F0800, 0xA0E40003, 0x0000FFFF}));
    EXPECT_EQ(WordsOf("ps_1_1\ntex t0\nmul_x2_sat r0, t0, -v1.a"),
              (Words{0xFFFF0101, 0x00000042, 0xB00F0000, 0x00000005, 0x811F0000, 0xB0E40000,
                     0x91FF0001, 0x0000FFFF}));
    EXPECT_EQ(WordsOf("vs_1_1\ndcl_position v0\ndef c0, 1, 2, 0, -1\nmov a0.x, c0.y\n"
                      "add oPos, v0, c[a0.x + 4]"),
              (Words{0xFFFE0101, 0x0000001F, 0x80000000, 0x900F0000, 0x00000051, 0xA00F0000,
                     0x3F800000, 0x40000000, 0x00000000, 0xBF800000, 0x00000001, 0xB0010000,
                     0xA0550000, 0x00000002, 0xC00F0000, 0x90E40000, 0xA0E42004, 0x0000FFFF}));
    EXPECT_EQ(
        WordsOf("vs_2_0\ndcl_texcoord2 v3\nmova a0.y, v3\nadd oPos, v3, c[a0.y + 4]"),
        (Words{0xFFFE0200, 0x0200001F, 0x80020005, 0x900F0003, 0x0200002E, 0xB0020000, 0x90E40003,
               0x04000002, 0xC00F0000, 0x90E40003, 0xA0E42004, 0xB0550000, 0x0000FFFF}));
    EXPECT_EQ(
        WordsOf("ps_3_0\ndcl_cube s2\ndcl_color v0\nsetp_gt p0, v0, c0\n"
                "(!p0.x) texldb r0, v0, s2\nmov oC0, v0"),
        (Words{0xFFFF0300, 0x0200001F, 0x98000000, 0xA00F0802, 0x0200001F, 0x8000000A, 0x900F0000,
               0x0301005E, 0xB00F1000, 0x90E40000, 0xA0E40000, 0x14020042, 0x800F0000, 0xBD001000,
               0x90E40000, 0xA0E40802, 0x02000001, 0x800F0800, 0x90E40000, 0x0000FFFF}));
    EXPECT_EQ(WordsOf("ps_1_1\nmov r0.rgb, c0\n+mov r0.a, c1")[4], 0x40000001u);
}

TEST(ShaderAssembler, BothSpellingsOfVersions)
{
    EXPECT_EQ(WordsOf("ps.1.1\nmov r0, c0"), WordsOf("ps_1_1\nmov r0, c0"));
    EXPECT_EQ(WordsOf("vs.2.sw\ndcl_position v0\nmov oPos, v0")[0], 0xFFFE02FFu);
    const std::pair<const char*, Word> versions[] = {
        {"ps_2_a", 0xFFFF0201},  {"ps_2_b", 0xFFFF0201}, {"ps_2_x", 0xFFFF0201},
        {"ps_2_sw", 0xFFFF02FF}, {"ps_3_0", 0xFFFF0300}, {"ps_3_sw", 0xFFFF03FF}};
    for (const auto& [name, word] : versions)
        EXPECT_EQ(WordsOf(std::string(name) + "\nmov oC0, c0")[0], word) << name;
}

TEST(ShaderAssembler, CommentsAndBlanksDoNotCount)
{
    EXPECT_EQ(WordsOf("; a\n  ps_1_1 // b\n/* c\n d */ mov r0, ; e\n c0 /* */ mov r1,c1"),
              WordsOf("ps_1_1\nmov r0, c0\nmov r1, c1"));
    EXPECT_EQ(FaultOf("ps_1_1\nmov r0, c0 /* open"), "");
}

TEST(ShaderAssembler, NumbersOfDefinitions)
{
    const Words words = WordsOf("ps_2_0\ndef c0, .5, -2.25e1, 3f, +0\nmov oC0, c0");
    EXPECT_EQ(words[3], 0x3F000000u);
    EXPECT_EQ(words[4], 0xC1B40000u);
    EXPECT_EQ(words[5], 0x40400000u);
    EXPECT_EQ(words[6], 0u);
}

TEST(ShaderAssembler, ErrorsNameTheirPlace)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "(1,1) the text does not begin with a version such as vs_1_1"},
        {"ps_9_0", "(1,1) the text does not begin with a version such as vs_1_1"},
        {"ps_1_1\nmov r0, c0\n  frobnicate r0",
         "(3,3) the version has no instruction 'frobnicate'"},
        {"ps_1_1\nmov_what r0, c0", "(2,1) the version has no instruction 'mov_what'"},
        {"ps_1_1\nrcp r0, c0", "(2,1) the version has no instruction 'rcp'"},
        {"ps_1_1\nmov r0 c0", "(2,8) expected ','"},
        {"ps_1_1\nmov r0, x0", "(2,9) the version has no register 'x0'"},
        {"ps_1_1\nmov r0, oPos", "(2,9) the version has no register 'oPos'"},
        {"ps_1_1\nmov r0, c0.xq", "(2,12) expected one to four components"},
        {"ps_1_1\nmov r0.ar, c0", "(2,8) expected components in order"},
        {"ps_1_1\nmov r0, c0_what", "(2,9) there is no modifier '_what'"},
        {"ps_1_1\nmov r0_bias, c0", "(2,5) a result has no modifier"},
        {"ps_1_1\nmov r0, 2-c0", "(2,9) expected a register"},
        {"ps_1_1\n, ", "(2,1) expected an instruction"},
        {"ps_2_0\ndef c0, 1, 2, x, 4", "(2,15) expected a number"},
        {"ps_2_x\ndefb b0, maybe", "(2,10) expected true or false"},
        {"vs_1_1\ndcl_hue v0", "(2,1) there is no usage 'hue'"},
        {"vs_2_0\nmov r0, c[a0.x", "(2,15) expected ']'"},
        {"vs_2_0\nmov r0, c[a0.x + aL]", "(2,18) two registers in one index"},
        {"vs_2_0\nmov r0, c[4000000000]", "(2,21) the register number is too high"},
        // Rules of the version have the place of the instruction.
        {"ps_1_1\nmov r0, c0\n mov r0, c9", "(3,2) a register number is too high"},
        {"ps_2_0\nmov r0, c0\n", "(2,1) oC0 is not written completely"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(FaultOf(text), expected) << text;
}

TEST(ShaderAssembler, EveryCutTextIsHandled)
{
    for (const std::string text : kTexts)
        for (size_t size = 0; size < text.size(); ++size)
            FaultOf(text.substr(0, size));
}

TEST(ShaderDisassembler, GivesTheTextBack)
{
    for (const char* text : kTexts) {
        Words words;
        AssemblyFault fault;
        ASSERT_TRUE(AssembleUnchecked(text, words, fault)) << text << fault.reason << fault.line;
        Bytecode code;
        Fault found;
        ASSERT_TRUE(ReadBytecode(words, code, found)) << text << found.reason;
        EXPECT_EQ(Disassemble(code), text);
    }
}

} // namespace headless::shader
