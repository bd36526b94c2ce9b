// Pixels are shaded four or eight at a time, with instructions of the processor or plain C++. All give the
// same bits.

#include "platform/SimdPlain.h"
#include "platform/headless/d3d9/SpanKernel.h"
#include "platform/headless/d3d9/SpanShader.h"
#include "tests/platform/headless_d3d9/RandomDraw.h"
#include "tests/support/HostCost.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace plain_form {

namespace simd = simd_plain;
using namespace simd_plain;
#include "platform/headless/d3d9/FourLanes.inc"

} // namespace plain_form

namespace headless {

// Where all of the program is built with the plain form, this is the program's own.
struct NoSuchFloats {};
using PlainFloats = std::conditional_t<std::is_same_v<simd::Floats4, simd_plain::Floats4>,
                                       NoSuchFloats, simd_plain::Floats4>;
template <>
struct FormOf<PlainFloats> {
    using Form = plain_form::FourLanes;
};

} // namespace headless

using namespace headless;

namespace {

SpanShader& PlainSpanShader()
{
    using Lanes = std::conditional_t<std::is_same_v<simd::Floats4, simd_plain::Floats4>, FourLanes,
                                     plain_form::FourLanes>;
    static SpanKernel<Lanes> shader;
    return shader;
}

/// The pictures after a draw, or nothing if it was refused.
std::vector<uint8_t> DrawWith(SpanShader& shader, uint32_t seed)
{
    RandomDraw draw(seed);
    Rasterizer rasterizer;
    rasterizer.UseSpans(shader);
    return SUCCEEDED(draw.Draw(rasterizer)) ? draw.Pictures() : std::vector<uint8_t>();
}

} // namespace

TEST(SpanForms, GiveTheSameBitsForRandomStates)
{
    const auto draws = static_cast<uint32_t>(AffordableCases(1500));
    uint32_t drawn = 0, changed = 0;
    for (uint32_t seed = 0; seed < draws; ++seed) {
        const std::vector<uint8_t> four = DrawWith(*FourSpanShader(), seed);
        ASSERT_EQ(DrawWith(PlainSpanShader(), seed), four) << "plain, draw " << seed;
        if (EightSpanShader()) {
            ASSERT_EQ(DrawWith(*EightSpanShader(), seed), four) << "eight, draw " << seed;
        }
        drawn += !four.empty();
        changed += !four.empty() && four != RandomDraw(seed).Pictures();
    }
    EXPECT_GT(drawn, draws * 8 / 10);
    EXPECT_GT(changed, draws / 3); // depth and alpha tests drop all pixels of many
}
