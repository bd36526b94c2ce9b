// Branches and loops: real ones where the profile has them, choices and copies where not. Each text is run on
// several inputs and compared with the same steps in C++.

#include "tests/platform/headless_language/FlowCases.h"
#include "tests/platform/headless_language/LanguageRun.h"

#include <cmath>

#include <gtest/gtest.h>

namespace headless::hl {

namespace {

/// The rounds of these depend on values, so only some profiles have them.
const FlowCase kDynamicCases[] = {
    {"rounds of a value",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < y; i++) r += x; return r; }",
     [](float x, float y) {
         float r = 0;
         for (int i = 0; static_cast<float>(i) < y; ++i)
             r += x;
         return r;
     }},
    {"while", "float f(float x, float y) { while (x < 20) { x = x * 2 + 5; y += 1; } return y; }",
     [](float x, float y) {
         while (x < 20) {
             x = x * 2 + 5;
             y += 1;
         }
         return y;
     }},
    {"do", "float f(float x, float y) { do { x = x * 2 + 3; y += 1; } while (x < 20); return y; }",
     [](float x, float y) {
         do {
             x = x * 2 + 3;
             y += 1;
         } while (x < 20);
         return y;
     }},
    {"break and continue",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < 100 * y; i++) {"
     " if (r > 12) break; if (i < x) continue; r += i; } return r; }",
     [](float x, float y) {
         float r = 0;
         for (int i = 0; static_cast<float>(i) < 100 * y; ++i) {
             if (r > 12)
                 break;
             if (static_cast<float>(i) < x)
                 continue;
             r += static_cast<float>(i);
         }
         return r;
     }},
    {"return",
     "float f(float x, float y) { for (int i = 0; i < 50 + y; i++) { x += 2; if (x > 9) return i; } return -1; }",
     [](float x, float y) {
         for (int i = 0; static_cast<float>(i) < 50 + y; ++i) {
             x += 2;
             if (x > 9)
                 return static_cast<float>(i);
         }
         return -1.0f;
     }},
    {"the head's variable behind a break",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < 100 * y; i++) {"
     " if (r > 12) break; r += i; } return r + i * 1000; }",
     [](float, float y) {
         float r = 0;
         int i = 0;
         for (; static_cast<float>(i) < 100 * y && !(r > 12); ++i)
             r += static_cast<float>(i);
         return r + static_cast<float>(i * 1000);
     }},
    {"exchange",
     "float f(float x, float y) { float p = x, q = y; for (int i = 0; i < 3 + y; i++) {"
     " float t = p; p = q; q = t + 1; } return p * 10 + q; }",
     [](float x, float y) {
         float p = x, q = y;
         for (int i = 0; static_cast<float>(i) < 3 + y; ++i) {
             const float t = p;
             p = q;
             q = t + 1;
         }
         return p * 10 + q;
     }},
    {"nested",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < x + 2; i++) { for (int j = 0; j < i; j++)"
     " { if (r > 8) break; r += y + j; } r += 1; } return r; }",
     [](float x, float y) {
         float r = 0;
         for (int i = 0; static_cast<float>(i) < x + 2; ++i) {
             for (int j = 0; j < i && !(r > 8); ++j)
                 r += y + static_cast<float>(j);
             r += 1;
         }
         return r;
     }},
    {"a long branch",
     "float f(float x, float y) { float r = y; [branch] if (x > 1) { r = exp2(x); for (int i = 0; i < x; i++)"
     " r += 1; } else { r = x - y; } return r; }",
     [](float x, float y) {
         if (!(x > 1))
             return x - y;
         float r = std::exp2(x);
         for (int i = 0; static_cast<float>(i) < x; ++i)
             r += 1;
         return r;
     }},
};

void ExpectFlow(const FlowCase& c, const std::string& profile)
{
    const std::string text =
        TextOf(std::string("float4 a, b;\n") + c.function,
               "float4(f(a.x, b.x), f(a.y, b.y), f(a.z, b.z), f(a.w, b.w))", profile);
    LanguageRun run(text, profile);
    if (!run.IsMade())
        return;
    constexpr Four kA = {1.5f, -2.0f, 0.25f, 3.0f}, kB = {0.5f, 2.0f, -1.0f, 1.25f};
    run.Set("a", {kA});
    run.Set("b", {kB});
    const Four found = run.Result();
    for (size_t i = 0; i < 4; ++i) {
        const float wanted = c.rule(kA[i], kB[i]);
        EXPECT_NEAR(found[i], wanted, 1e-5 * std::max(1.0f, std::fabs(wanted)))
            << profile << ' ' << c.what << " component " << i << '\n'
            << ListingOf(*run.made.shader);
    }
}

} // namespace

TEST(HlFlow, EveryProfileHasLoopsWithKnownRounds)
{
    for (const FlowCase& c : kFlowCases)
        for (const char* profile :
             {"vs_2_0", "vs_2_a", "vs_3_0", "ps_2_0", "ps_2_a", "ps_2_b", "ps_3_0"})
            ExpectFlow(c, profile);
}

TEST(HlFlow, LoopsOfValuesRunWhereTheProfileHasThem)
{
    for (const FlowCase& c : kDynamicCases)
        for (const char* profile : {"vs_2_a", "vs_3_0", "vs_3_sw", "ps_2_a", "ps_2_sw", "ps_3_0"})
            ExpectFlow(c, profile);
}

TEST(HlFlow, LoopsOfValuesAreErrorsElsewhere)
{
    for (const char* profile : {"vs_1_1", "vs_2_0", "ps_2_0", "ps_2_b"}) {
        const CompiledText made = CompileText(
            "float4 a;\nfloat4 main(float4 p : TEXCOORD0) : COLOR {\n  while (a.x < 3) a.y;\n  return p; }",
            profile);
        EXPECT_EQ(
            made.messages,
            "3,3 X4000: the loop cannot be unrolled: its rounds are not known, or more than 1024\n")
            << profile;
    }
}

TEST(HlFlow, MoreThan1024RoundsAreTooMany)
{
    const auto text = [](int rounds) {
        return "float4 a;\nfloat4 main() : COLOR { float x = a.x; for (int i = 0; i < " +
               std::to_string(rounds) + "; i++) if (i == 3) x += 1; return x; }";
    };
    EXPECT_EQ(CompileText(text(1024), "ps_2_0").messages, "");
    EXPECT_EQ(
        CompileText(text(1025), "ps_2_0").messages,
        "2,40 X4000: the loop cannot be unrolled: its rounds are not known, or more than 1024\n");
}

TEST(HlFlow, AConstantCountsTheRoundsOfAVertexShader)
{
    LanguageRun run(
        "int n; float4 a;\nvoid main(out float4 p : POSITION, out float4 r : TEXCOORD0) {"
        " p = 0; r = a; for (int i = 0; i < n; i++) r += i; }",
        "vs_2_0");
    ASSERT_TRUE(run.IsMade());
    EXPECT_NE(ListingOf(*run.made.shader).find("rep i0"), std::string::npos);
    for (const int rounds : {0, 1, 5}) {
        run.Set("a", {{10, 20, 30, 40}});
        run.SetWhole("n", rounds);
        const float sum = static_cast<float>(rounds * (rounds - 1) / 2);
        EXPECT_EQ(run.Result(), (Four{10 + sum, 20 + sum, 30 + sum, 40 + sum})) << rounds;
    }
}

TEST(HlFlow, RealFlowIsUsedWhereItIsAsked)
{
    const std::string text = "float4 a;\nfloat4 main() : COLOR { float4 r = a;\n"
                             "[branch] if (a.x > 0) r = a * 2; return r; }";
    EXPECT_NE(ListingOf(*CompileText(text, "ps_3_0").shader).find("if_ne"), std::string::npos);
    EXPECT_EQ(ListingOf(*CompileText(text, "ps_2_0").shader).find("if"), std::string::npos);
}

TEST(HlFlow, PixelsAreDroppedOnTheirPathOnly)
{
    const std::string text =
        "float4 a, b;\nfloat4 main() : COLOR { if (a.x > 1) { if (b.x > 0) discard; }"
        " else clip(b.y); return 1; }";
    for (const char* profile : {"ps_2_0", "ps_2_a", "ps_3_0"}) {
        static const struct {
            float a, bx, by;
            bool isDropped;
        } kDrops[] = {{2, 1, 1, true}, {2, -1, -1, false}, {0, 1, 1, false}, {0, 1, -1, true}};
        for (const auto& c : kDrops) {
            LanguageRun run(text, profile);
            run.Set("a", {{c.a, 0, 0, 0}});
            run.Set("b", {{c.bx, c.by, 0, 0}});
            run.Result();
            EXPECT_EQ(run.run->IsKilled(0), c.isDropped)
                << profile << ' ' << c.a << ' ' << c.bx << ' ' << c.by;
        }
    }
}

} // namespace headless::hl
