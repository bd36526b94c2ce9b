// Pixels of shaders are shaded four or eight at a time, and those of several primitives together. None of it
// changes a bit.

#include "platform/headless/d3d9/ShaderPixels.h"
#include "platform/headless/shader/Assembler.h"
#include "tests/platform/headless_d3d9/RandomDraw.h"
#include "tests/support/HostCost.h"

#include <gtest/gtest.h>
#include <iterator>
#include <string>

using namespace headless;

namespace {

/// One for each way through the code that shades: levels of textures, tests before and behind the program,
/// flow control, modifiers, inputs.
const char* const kTexts[] = {
    "ps_2_0\ndcl t0\ndcl t1\ndcl v0\ndcl_volume s0\ndcl_volume s1\ntexld r0, t0, s0\n"
    "texldb r1, t1, s1\nmul r2, r0, r1\nmad_sat r3, r2, v0, -c0\ndp3 r4, r2, c1\nrsq r4, r4.x\n"
    "lrp r5, r3, r4, r2\nmov oC0, r5",
    "ps_2_0\ndcl t0\ndcl t2\ndcl_volume s0\ndcl_volume s2\ntexldp r0, t0, s0\n"
    "texld r1, r0, s2\nmov r1.xyz, r1.yzxw\nadd r0, r0, r1\nfrc r0.xyz, r0\nmov oC0, r0",
    "ps_2_0\ndcl v0\ndcl v1\nmov r0, v0\nsub r1, r0, c0\ntexkill r1\nadd r0, v0, v1\nmov oC0, r0",
    "ps_2_0\ndcl v0\ndcl t0\nmad r0, v0, c0, c1\nmov oC0, r0\nmov oDepth, t0.x",
    "ps_3_0\ndcl_texcoord v0\ndcl_volume s0\ndcl_volume s1\ndsx r0, v0\ndsy r1, v0\n"
    "texldd r2, v0, s0, r0, r1\ntexldl r3, v0, s1.wzyx\nmad r0, r0, r1, r2\nadd oC0, r0, r3",
    "ps_3_0\ndcl_color v0\ndcl vPos.xy\ndcl vFace\nmul r0, v0, c0\nmad r0.xy, vPos, c1, r0\n"
    "cmp r0.zw, vFace, r0, c2\npow r1, r0.x, c3.y\nexp r1.y, r0.y\nlog r1.z, r0.z\nmov oC0, r1",
    "ps_3_0\ndefi i0, 3, 0, 0, 0\ndcl_color v0\ndcl_texcoord v1\nmov r0, v0\nif_gt v0.x, c0.x\n"
    "add r0.xy, r0, c1\nelse\nmul_sat r0.zw, r0, c2\nendif\nrep i0\nmad r0, r0, v0, c3\n"
    "break_gt r0.x, v1.y\nendrep\nsetp_lt p0, r0, c4\n(p0) mov r0, c5\nnrm r1, r0\nmov oC0, r1",
    "ps_1_4\ndef c7, 0.5, 0.5, 0.5, 1\ntexld r0, t0\ntexcrd r1.xyz, t1\n"
    "mad_x2_sat r0.xyz, r0_bx2, r1, c7\n+mov r0.w, 1-r0.w",
    "ps_1_1\ntex t0\ntexbem t1, t0\nmul_sat r0, t1, v0\nadd_d2 r0, r0, t1_bias",
};

shader::Program ProgramOf(const char* text)
{
    std::vector<shader::Word> words;
    shader::AssemblyFault assembly;
    EXPECT_TRUE(Assemble(text, words, assembly)) << text << "\n" << assembly.reason;
    shader::Bytecode code;
    shader::Fault fault;
    EXPECT_TRUE(ReadBytecode(words, code, fault)) << fault.reason;
    shader::Program program;
    BuildProgram(code, program);
    return program;
}

/// The pictures after a draw, or nothing if it was refused.
std::vector<uint8_t> DrawWith(ShaderPixels& pixels, shader::Program& program, uint32_t seed,
                              bool isEach)
{
    RandomDraw draw(seed);
    draw.ShadeBy(program);
    Rasterizer rasterizer;
    rasterizer.UseShader(pixels);
    const HRESULT result = isEach ? draw.DrawEach(rasterizer) : draw.Draw(rasterizer);
    return SUCCEEDED(result) ? draw.Pictures() : std::vector<uint8_t>();
}

} // namespace

TEST(ShaderForms, GiveTheSameBitsForRandomStates)
{
    const auto draws = static_cast<uint32_t>(AffordableCases(200));
    size_t drawn = 0, changed = 0;
    for (const char* const text : kTexts) {
        shader::Program program = ProgramOf(text);
        for (uint32_t seed = 0; seed < draws; ++seed) {
            const auto four = DrawWith(*FourShaderPixels(), program, seed, false);
            if (EightShaderPixels()) {
                ASSERT_EQ(DrawWith(*EightShaderPixels(), program, seed, false), four)
                    << "draw " << seed << "\n"
                    << text;
            }
            drawn += !four.empty();
            changed += !four.empty() && four != RandomDraw(seed).Pictures();
        }
    }
    const size_t all = draws * std::size(kTexts);
    EXPECT_GT(drawn, all * 8 / 10);
    EXPECT_GT(changed, all / 8); // tests drop all pixels of many
}

TEST(ShaderForms, PrimitivesTogetherGiveWhatEachGivesAlone)
{
    const auto draws = static_cast<uint32_t>(AffordableCases(200));
    for (const char* const text : kTexts) {
        shader::Program program = ProgramOf(text);
        uint32_t compared = 0;
        for (uint32_t seed = 0; seed < draws; ++seed) {
            if (!RandomDraw(seed).HasList())
                continue;
            ++compared;
            for (ShaderPixels* pixels : {FourShaderPixels(), EightShaderPixels()}) {
                if (!pixels)
                    continue;
                ASSERT_EQ(DrawWith(*pixels, program, seed, false),
                          DrawWith(*pixels, program, seed, true))
                    << "draw " << seed << "\n"
                    << text;
            }
        }
        EXPECT_GT(compared, draws / 4);
    }
}
