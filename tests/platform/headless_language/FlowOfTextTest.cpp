// Branches and loops: real ones where the profile has them, choices and copies where not. Each text is run on
// several inputs and compared with the same steps in C++.

#include "tests/platform/headless_language/LanguageRun.h"

#include <cmath>
#include <functional>

#include <gtest/gtest.h>

namespace headless::hl {

namespace {

struct FlowCase {
    const char* what;
    const char* function; ///< `float f(float x, float y)`
    std::function<float(float, float)> rule;
};

float SumTo(float x, int n)
{
    float sum = 0;
    for (int i = 0; i < n; ++i)
        sum += x * static_cast<float>(i);
    return sum;
}

const FlowCase kFlowCases[] = {
    {"if", "float f(float x, float y) { float r = 1; if (x > y) r = x; return r; }",
     [](float x, float y) { return x > y ? x : 1; }},
    {"else",
     "float f(float x, float y) { float r; if (x > y) { r = x; } else { r = y * 2; } return r; }",
     [](float x, float y) { return x > y ? x : y * 2; }},
    {"else if",
     "float f(float x, float y) { if (x > 2) return 1; else if (x > 1) return y; else return 3; }",
     [](float x, float y) { return x > 2   ? 1
                                   : x > 1 ? y
                                           : 3; }},
    {"early return",
     "float f(float x, float y) { if (x > 1) return 2; if (y < 0) return x * 3; return 7; }",
     [](float x, float y) { return x > 1   ? 2
                                   : y < 0 ? x * 3
                                           : 7; }},
    {"what follows a return",
     "float f(float x, float y) { float r = y; if (x > 1) { r = 5; return r; } r += 1;"
     " if (r > 2) r = -r; return r; }",
     [](float x, float y) { return x > 1       ? 5
                                   : y + 1 > 2 ? -(y + 1)
                                               : y + 1; }},
    {"nested",
     "float f(float x, float y) { float r = 0; if (x > 0) { if (y > 0) r = 1; else r = 2; r += x; }"
     " return r; }",
     [](float x, float y) { return x > 0 ? (y > 0 ? 1 : 2) + x : 0; }},
    {"a known loop",
     "float f(float x, float y) { float r = y; for (int i = 0; i < 5; i++) r += x * i; return r; }",
     [](float x, float y) { return y + SumTo(x, 5); }},
    {"the head's variable behind the loop",
     "float f(float x, float y) { float r = y; for (int i = 0; i < 5; i++) r += x * i; r += i * 2;"
     " for (i = 1; i < 3; i++) r *= 2; return r + i; }",
     [](float x, float y) { return (y + SumTo(x, 5) + 10) * 4 + 3; }},
    {"switch",
     "static const int kTwo = 2; float f(float x, float y) { float r = 5; switch ((int)(x * 2)) {"
     " case 0: r = y; break; case 3: case kTwo: { r = y * 2; break; } default: r += 1; break;"
     " case 7: case -4: r = 9; } return r; }",
     [](float x, float y) {
         switch (static_cast<int>(x * 2)) {
         case 0:
             return y;
         case 3:
         case 2:
             return y * 2;
         case 7:
         case -4:
             return 9.0f;
         default:
             return 6.0f;
         }
     }},
    {"switch on what the text tells",
     "float g(int n, float x) { float r = 0; switch (n) { default: r = 1; break; case 1: return x * 2;"
     " case 2: r = x; { r += 4; } } return r; }"
     "float f(float x, float y) { return g(1, x) + g(2, y) + g(3, x); }",
     [](float x, float y) { return x * 2 + y + 4 + 1; }},
    {"break and continue out of a case",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < 5; i++) { switch (i) {"
     " case 1: if (x > y) break; r += x; break; case 2: if (x < y) continue; r += 1; break;"
     " case 3: continue; default: r += y; } r += i; } return r; }",
     [](float x, float y) {
         float r = 0;
         for (int i = 0; i < 5; ++i) {
             if ((i == 2 && x < y) || i == 3)
                 continue;
             if (i == 1)
                 r += x > y ? 0 : x;
             else
                 r += i == 2 ? 1 : y;
             r += static_cast<float>(i);
         }
         return r;
     }},
    {"switch in switch",
     "float f(float x, float y) { float r = 1; int n = x > 1 ? 1 : 0, m = y > 1 ? 3 : 2; switch (n) {"
     " case 1: switch (m) { case 3: if (x > y) break; r = 2; break; case 2: return 7; } r += 10; break;"
     " case 0: r = 3; } return r; }",
     [](float x, float y) {
         if (!(x > 1))
             return 3.0f;
         if (!(y > 1))
             return 7.0f;
         return (x > y ? 1.0f : 2.0f) + 10;
     }},
    {"a loop downwards",
     "float f(float x, float y) { float r = 0; for (int i = 4; i > 0; i -= 2) r = r * y + i;"
     " return r + x; }",
     [](float x, float y) { return 4 * y + 2 + x; }},
    {"break",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < 6; i++) { if (r > x) break;"
     " r += 1; } return r + y; }",
     [](float x, float y) {
         float r = 0;
         for (int i = 0; i < 6 && !(r > x); ++i)
             r += 1;
         return r + y;
     }},
    {"continue",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < 6; i++) { if (i * y > x) continue;"
     " r += i; } return r; }",
     [](float x, float y) {
         float r = 0;
         for (int i = 0; i < 6; ++i)
             if (!(static_cast<float>(i) * y > x))
                 r += static_cast<float>(i);
         return r;
     }},
    {"return from a loop",
     "float f(float x, float y) { for (int i = 0; i < 4; i++) { x *= 2; if (x > 10)"
     " return i + y; } return -x; }",
     [](float x, float y) {
         for (int i = 0; i < 4; ++i) {
             x *= 2;
             if (x > 10)
                 return static_cast<float>(i) + y;
         }
         return -x;
     }},
    {"break of the inner loop",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < 3; i++) { for (int j = 0; j < 3; j++) {"
     " if (j > x) break; r += 1; } r += y; } return r; }",
     [](float x, float y) {
         float r = 0;
         for (int i = 0; i < 3; ++i) {
             for (int j = 0; j < 3 && !(static_cast<float>(j) > x); ++j)
                 r += 1;
             r += y;
         }
         return r;
     }},
    {"while with a number",
     "float f(float x, float y) { int i = 0; while (i < 3) { x = x * 0.5 + y; ++i; } return x; }",
     [](float x, float y) {
         for (int i = 0; i < 3; ++i)
             x = x * 0.5f + y;
         return x;
     }},
    {"a condition beside a number",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < 5 && r < x; i++) r += 0.75; return r * y; }",
     [](float x, float y) {
         float r = 0;
         for (int i = 0; i < 5 && r < x; ++i)
             r += 0.75f;
         return r * y;
     }},
    {"do", "float f(float x, float y) { int i = 0; do { x += y; i++; } while (i < 3); return x; }",
     [](float x, float y) { return x + y + y + y; }},
    {"a function in a loop",
     "float g(float v) { if (v > 1) return v * 0.5; return v + 1; }"
     "float f(float x, float y) { for (int i = 0; i < 4; i++) x = g(x); return x + y; }",
     [](float x, float y) {
         for (int i = 0; i < 4; ++i)
             x = x > 1 ? x * 0.5f : x + 1;
         return x + y;
     }},
    {"an array in a loop",
     "float f(float x, float y) { float t[4]; for (int i = 0; i < 4; i++) t[i] = x * i;"
     " float r = y; for (int j = 3; j >= 0; j--) r = r * 0.5 + t[j]; return r; }",
     [](float x, float y) {
         float r = y;
         for (int j = 3; j >= 0; --j)
             r = r * 0.5f + x * static_cast<float>(j);
         return r;
     }},
    {"hints",
     "float f(float x, float y) { float r = 0; [unroll(4)] for (int i = 0; i < 4; i++) r += x;"
     " [flatten] if (y > 0) r = -r; [branch] if (x > 0) r += 1; else r -= 1; return r; }",
     [](float x, float y) { return (y > 0 ? -4 * x : 4 * x) + (x > 0 ? 1 : -1); }},
};

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
