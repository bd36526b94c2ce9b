#pragma once

#include <functional>

namespace headless::hl {

/// A function with branches and loops whose rounds the text tells, and the same steps in C++.
struct FlowCase {
    const char* what;
    const char* function; ///< `float f(float x, float y)`
    std::function<float(float, float)> rule;
};

inline float SumTo(float x, int n)
{
    float sum = 0;
    for (int i = 0; i < n; ++i)
        sum += x * static_cast<float>(i);
    return sum;
}

inline const FlowCase kFlowCases[] = {
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
    {"the head's variable behind a break",
     "float f(float x, float y) { float r = 0; for (int i = 0; i < 6; i++) { if (r > x) break;"
     " r += 1; } return r * 10 + i + y; }",
     [](float x, float y) {
         float r = 0;
         int i = 0;
         for (; i < 6 && !(r > x); ++i)
             r += 1;
         return r * 10 + static_cast<float>(i) + y;
     }},
    {"a break in the first round, and continue",
     "float f(float x, float y) { for (int i = 3; i > 0; i--) { if (i * x < y) continue;"
     " if (i > x + 1) break; } return i; }",
     [](float x, float y) {
         int i = 3;
         for (; i > 0; --i) {
             if (static_cast<float>(i) * x < y)
                 continue;
             if (static_cast<float>(i) > x + 1)
                 break;
         }
         return static_cast<float>(i);
     }},
    {"a variable of its own behind a break and a condition",
     "float f(float x, float y) { int i = 9; for (i = 1; i < 5 && i < y * 4; i += 1) if (i > x) break;"
     " return i * 2 + y; }",
     [](float x, float y) {
         int i = 1;
         for (; i < 5 && static_cast<float>(i) < y * 4; ++i)
             if (static_cast<float>(i) > x)
                 break;
         return static_cast<float>(i * 2) + y;
     }},
    {"a variable that an inner loop counts by, behind the break of the outer one",
     "float f(float x, float y) { int i, j = 7; float r = 0; for (i = 0; i < 3; i++) { if (i > x) break;"
     " for (j = 0; j < 3; j++) { if (j > y) break; r += 1; } } return r * 100 + i * 10 + j; }",
     [](float x, float y) {
         int i = 0, j = 7;
         float r = 0;
         for (; i < 3 && !(static_cast<float>(i) > x); ++i)
             for (j = 0; j < 3 && !(static_cast<float>(j) > y); ++j)
                 r += 1;
         return r * 100 + static_cast<float>(i * 10 + j);
     }},
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

} // namespace headless::hl
