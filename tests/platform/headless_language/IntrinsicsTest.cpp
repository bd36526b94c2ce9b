// Each intrinsic function and operator, computed here in double precision and by the code that is made for
// several profiles: on constants that are known when the shader runs, and on numbers in the text.

#include "tests/platform/headless_language/LanguageRun.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include <gtest/gtest.h>

namespace headless::hl {

namespace {

using Numbers = std::array<double, 4>;
using NumbersRule = std::function<Numbers(const Numbers& a, const Numbers& b, const Numbers& c)>;

enum Profiles : unsigned { kAll = 0, kPixel30 = 1, kNotVs11 = 2, kRunOnly = 4 };

struct IntrinsicRow {
    const char* expression;
    NumbersRule rule;
    double tolerance = 4e-6; ///< of the result, or absolutely below 1
    unsigned profiles = kAll;
};

/// A rule for each number alone.
NumbersRule Each(const std::function<double(double)>& f)
{
    return [f](const Numbers& a, const Numbers&, const Numbers&) {
        return Numbers{f(a[0]), f(a[1]), f(a[2]), f(a[3])};
    };
}

NumbersRule Each2(const std::function<double(double, double)>& f)
{
    return [f](const Numbers& a, const Numbers& b, const Numbers&) {
        return Numbers{f(a[0], b[0]), f(a[1], b[1]), f(a[2], b[2]), f(a[3], b[3])};
    };
}

NumbersRule Each3(const std::function<double(double, double, double)>& f)
{
    return [f](const Numbers& a, const Numbers& b, const Numbers& c) {
        return Numbers{f(a[0], b[0], c[0]), f(a[1], b[1], c[1]), f(a[2], b[2], c[2]),
                       f(a[3], b[3], c[3])};
    };
}

NumbersRule ForAll(const std::function<double(const Numbers&, const Numbers&, const Numbers&)>& f)
{
    return [f](const Numbers& a, const Numbers& b, const Numbers& c) {
        const double value = f(a, b, c);
        return Numbers{value, value, value, value};
    };
}

double DotOf(const Numbers& a, const Numbers& b, int count)
{
    double sum = 0;
    for (int i = 0; i < count; ++i)
        sum += a[static_cast<size_t>(i)] * b[static_cast<size_t>(i)];
    return sum;
}

constexpr struct {
    Numbers a, b, c;
} kIntrinsicInputs[] = {{{0.3, -1.7, 2.5, 0.75}, {1.25, 2.5, -0.5, 3.0}, {0.25, 0.5, 0.75, 1.5}},
                        {{-3.25, 0.125, 7.0, -0.6}, {0.5, -4.0, 2.0, 1.5}, {2.0, -1.0, 0.0, 0.5}},
                        {{1.0, 0.5, -0.25, 12.5}, {-1.0, 0.5, 8.0, -2.25}, {-0.5, 1.0, 0.25, 3.0}}};

std::string NumbersOf(const Numbers& values)
{
    std::string text = "float4(";
    for (size_t i = 0; i < 4; ++i)
        text += (i ? ", " : "") + std::to_string(values[i]);
    return text + ")";
}

Four FourOf(const Numbers& values)
{
    Four four;
    for (size_t i = 0; i < 4; ++i)
        four[i] = static_cast<float>(values[i]);
    return four;
}

void ExpectNear(const Four& found, const Numbers& wanted, double tolerance, const std::string& what)
{
    for (size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(found[i], wanted[i], tolerance * std::max(1.0, std::fabs(wanted[i])))
            << what << " component " << i;
}

void TestRow(const IntrinsicRow& row, const char* profile)
{
    LanguageRun run(TextOf("float4 a, b, c;", row.expression, profile), profile);
    for (const auto& input : kIntrinsicInputs) {
        const Numbers wanted = row.rule(input.a, input.b, input.c);
        const std::string what = std::string(profile) + ": " + row.expression;
        if (run.IsMade()) {
            run.Set("a", {FourOf(input.a)});
            run.Set("b", {FourOf(input.b)});
            run.Set("c", {FourOf(input.c)});
            ExpectNear(run.Result(), wanted, row.tolerance, what);
        }
        if ((row.profiles & kRunOnly) != 0)
            continue;
        const std::string numbers = "static const float4 a = " + NumbersOf(input.a) +
                                    ", b = " + NumbersOf(input.b) + ", c = " + NumbersOf(input.c) +
                                    ";";
        LanguageRun known(TextOf(numbers, row.expression, profile), profile);
        if (known.IsMade())
            ExpectNear(known.Result(), wanted, row.tolerance, "known, " + what);
    }
}

void TestRows(const std::vector<IntrinsicRow>& rows)
{
    for (const IntrinsicRow& row : rows)
        for (const char* profile : {"vs_1_1", "vs_2_0", "vs_3_0", "ps_2_0", "ps_2_a", "ps_3_0"}) {
            const std::string name = profile;
            if ((row.profiles & kPixel30) != 0 && name != "ps_3_0" && name != "ps_2_a")
                continue;
            if ((row.profiles & kNotVs11) != 0 && name == "vs_1_1")
                continue;
            TestRow(row, profile);
        }
}

double FractionOf(double x)
{
    return x - std::floor(x);
}

double SignOf(double x)
{
    return x > 0 ? 1 : x < 0 ? -1 : 0;
}

double Clamped(double x, double low, double high)
{
    return std::min(std::max(x, low), high);
}

} // namespace

TEST(HlIntrinsics, EachNumberAlone)
{
    TestRows({
        {"abs(a)", Each([](double x) { return std::fabs(x); })},
        {"floor(a)", Each([](double x) { return std::floor(x); })},
        {"ceil(a)", Each([](double x) { return std::ceil(x); })},
        {"round(a + 0.125)", Each([](double x) { return std::floor(x + 0.625); })},
        {"trunc(a)", Each([](double x) { return std::trunc(x); })},
        {"frac(a)", Each(FractionOf)},
        {"fmod(a, b)", Each2([](double x, double y) { return std::fmod(x, y); }), 1e-5},
        {"min(a, b)", Each2([](double x, double y) { return std::min(x, y); })},
        {"max(a, b)", Each2([](double x, double y) { return std::max(x, y); })},
        {"clamp(a, -abs(b), abs(c))", Each3([](double x, double y, double z) {
             return Clamped(x, -std::fabs(y), std::fabs(z));
         })},
        {"saturate(a)", Each([](double x) { return Clamped(x, 0, 1); })},
        {"lerp(a, b, c)", Each3([](double x, double y, double z) { return x + z * (y - x); })},
        {"step(a, b)", Each2([](double x, double y) { return y >= x ? 1.0 : 0.0; })},
        {"sign(a)", Each(SignOf)},
        {"sign(a - a)", Each([](double) { return 0.0; })},
        {"smoothstep(-1, 3, a)", Each([](double x) {
             const double t = Clamped((x + 1) / 4, 0, 1);
             return t * t * (3 - 2 * t);
         })},
        {"degrees(a)", Each([](double x) { return x * 180 / std::numbers::pi; })},
        {"radians(a)", Each([](double x) { return x * std::numbers::pi / 180; })},
        {"ldexp(a, c)", Each3([](double x, double, double z) { return x * std::exp2(z); })},
        {"sqrt(abs(a))", Each([](double x) { return std::sqrt(std::fabs(x)); })},
        {"rsqrt(abs(a))", Each([](double x) { return 1 / std::sqrt(std::fabs(x)); })},
    });
}

TEST(HlIntrinsics, PowersAndLogarithms)
{
    TestRows({
        {"exp(a / 4)", Each([](double x) { return std::exp(x / 4); }), 2e-5},
        {"exp2(a / 4)", Each([](double x) { return std::exp2(x / 4); })},
        {"log(abs(a))", Each([](double x) { return std::log(std::fabs(x)); })},
        {"log2(abs(a))", Each([](double x) { return std::log2(std::fabs(x)); })},
        {"log10(abs(a))", Each([](double x) { return std::log10(std::fabs(x)); })},
        {"pow(abs(a), b / 2)",
         Each2([](double x, double y) { return std::pow(std::fabs(x), y / 2); }), 2e-5},
        {"pow(a, 2)", Each([](double x) { return x * x; })},
        {"sinh(a / 4)", Each([](double x) { return std::sinh(x / 4); }), 2e-5},
        {"cosh(a / 4)", Each([](double x) { return std::cosh(x / 4); }), 2e-5},
        {"tanh(a)", Each([](double x) { return std::tanh(x); }), 2e-5},
    });
}

// The errors of the arcs are those of the published approximations; the sine of vs 1.1 is a series.
TEST(HlIntrinsics, Angles)
{
    TestRows({
        {"sin(a)", Each([](double x) { return std::sin(x); }), 2e-5},
        {"cos(a)", Each([](double x) { return std::cos(x); }), 2e-5},
        {"sin(a * 20)", Each([](double x) { return std::sin(x * 20); }), 2e-4},
        {"tan(a / 8)", Each([](double x) { return std::tan(x / 8); }), 2e-4},
        {"asin(frac(a) * 2 - 1)", Each([](double x) { return std::asin(FractionOf(x) * 2 - 1); }),
         1e-4},
        {"acos(frac(a) * 2 - 1)", Each([](double x) { return std::acos(FractionOf(x) * 2 - 1); }),
         1e-4},
        {"atan(a)", Each([](double x) { return std::atan(x); }), 2e-5},
        {"atan2(a, b)", Each2([](double x, double y) { return std::atan2(x, y); }), 2e-5, kNotVs11},
    });
}

TEST(HlIntrinsics, Vectors)
{
    TestRows({
        {"dot(a, b)", ForAll([](auto& a, auto& b, auto&) { return DotOf(a, b, 4); }), 1e-5},
        {"dot(a.xyz, b.xyz)", ForAll([](auto& a, auto& b, auto&) { return DotOf(a, b, 3); }), 1e-5},
        {"dot(a.xy, b.xy)", ForAll([](auto& a, auto& b, auto&) { return DotOf(a, b, 2); }), 1e-5},
        {"dot(a.x, b.x)", ForAll([](auto& a, auto& b, auto&) { return a[0] * b[0]; })},
        {"length(a)", ForAll([](auto& a, auto&, auto&) { return std::sqrt(DotOf(a, a, 4)); })},
        {"distance(a.xyz, b.xyz)", ForAll([](auto& a, auto& b, auto&) {
             const Numbers d = {a[0] - b[0], a[1] - b[1], a[2] - b[2], 0};
             return std::sqrt(DotOf(d, d, 3));
         })},
        {"normalize(a)",
         [](auto& a, auto&, auto&) {
             const double l = std::sqrt(DotOf(a, a, 4));
             return Numbers{a[0] / l, a[1] / l, a[2] / l, a[3] / l};
         }},
        {"float4(normalize(a.xyz), 2)",
         [](auto& a, auto&, auto&) {
             const double l = std::sqrt(DotOf(a, a, 3));
             return Numbers{a[0] / l, a[1] / l, a[2] / l, 2};
         }},
        {"float4(cross(a.xyz, b.xyz), 1)",
         [](auto& a, auto& b, auto&) {
             return Numbers{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                            a[0] * b[1] - a[1] * b[0], 1};
         },
         1e-5},
        {"reflect(a, c)",
         [](auto& a, auto&, auto& c) {
             const double d = 2 * DotOf(a, c, 4);
             return Numbers{a[0] - d * c[0], a[1] - d * c[1], a[2] - d * c[2], a[3] - d * c[3]};
         },
         1e-5},
        {"refract(a / 8, b / 8, 0.5)",
         [](auto& a, auto& b, auto&) {
             const double d = DotOf(a, b, 4) / 64;
             const double k = 1 - 0.25 * (1 - d * d);
             Numbers r{};
             for (size_t i = 0; i < 4; ++i)
                 r[i] = 0.5 * a[i] / 8 - (0.5 * d + std::sqrt(k)) * b[i] / 8;
             return r;
         }},
        {"refract(a / 8, b / 8, 4)",
         [](auto& a, auto& b, auto&) {
             const double d = DotOf(a, b, 4) / 64;
             const double k = 1 - 16 * (1 - d * d);
             Numbers r{};
             for (size_t i = 0; i < 4 && k >= 0; ++i)
                 r[i] = 4 * a[i] / 8 - (4 * d + std::sqrt(k)) * b[i] / 8;
             return r;
         },
         1e-5},
        {"faceforward(a, b, c)",
         [](auto& a, auto& b, auto& c) {
             const double s = DotOf(b, c, 4) < 0 ? 1 : -1;
             return Numbers{s * a[0], s * a[1], s * a[2], s * a[3]};
         }},
        {"lit(a.x, b.x, 4)",
         [](auto& a, auto& b, auto&) {
             const double s = a[0] < 0 || b[0] < 0 ? 0 : std::pow(b[0], 4);
             return Numbers{1, std::max(a[0], 0.0), s, 1};
         }},
        {"D3DCOLORtoUBYTE4(saturate(a))",
         [](auto& a, auto&, auto&) {
             const auto byte = [&](size_t i) {
                 return std::trunc(Clamped(a[i], 0, 1) * 255.001953);
             };
             return Numbers{byte(2), byte(1), byte(0), byte(3)};
         }},
    });
}

// Their results go to arguments: a function of the text brings them back.
TEST(HlIntrinsics, WrittenArguments)
{
    const struct {
        const char* declarations;
        const char* expression;
        NumbersRule rule;
    } cases[] = {
        {"float4 both(float4 x) { float4 s, c; sincos(x, s, c); return s + c * 2; }", "both(a)",
         Each([](double x) { return std::sin(x) + 2 * std::cos(x); })},
        {"float4 both(float4 x) { float4 w; float4 f = modf(x, w); return w * 10 + f; }", "both(a)",
         Each([](double x) { return std::trunc(x) * 10 + x - std::trunc(x); })},
        {"float4 both(float4 x) { float4 e; float4 m = frexp(abs(x), e); return e * 10 + m; }",
         "both(a)", Each([](double x) {
             int exponent = 0;
             const double part = std::frexp(std::fabs(x), &exponent);
             return exponent * 10 + part;
         })},
    };
    for (const auto& c : cases)
        for (const char* profile : {"vs_1_1", "vs_2_0", "vs_3_0", "ps_2_a", "ps_3_0"}) {
            LanguageRun run(
                TextOf(std::string("float4 a;") + c.declarations, c.expression, profile), profile);
            for (const auto& input : kIntrinsicInputs) {
                run.Set("a", {FourOf(input.a)});
                ExpectNear(run.Result(), c.rule(input.a, input.b, input.c), 5e-5,
                           std::string(profile) + c.declarations);
            }
        }
}

TEST(HlIntrinsics, Truths)
{
    TestRows({
        {"any(a.xy > 1) ? a : b",
         [](auto& a, auto& b, auto&) { return a[0] > 1 || a[1] > 1 ? a : b; }},
        {"all(a.xw > 0) ? a : b",
         [](auto& a, auto& b, auto&) { return a[0] > 0 && a[3] > 0 ? a : b; }},
        {"isfinite(a)", Each([](double) { return 1.0; })},
        {"isinf(a)", Each([](double) { return 0.0; })},
        {"isnan(a)", Each([](double) { return 0.0; })},
        {"isinf(a / (b - b)) ? 1 : 0", Each([](double) { return 1.0; }), 1e-6, kRunOnly | kPixel30},
    });
}

TEST(HlIntrinsics, Matrices)
{
    const auto matrix = [](const Numbers& a, const Numbers& b, const Numbers& c, int r,
                           int column) {
        const Numbers rows[] = {a, b, c, {a[3], b[2], c[1], a[0]}};
        return rows[r][static_cast<size_t>(column)];
    };
    const std::string m = "float4x4(a, b, c, float4(a.w, b.z, c.y, a.x))";
    static std::vector<std::string> texts = {
        "mul(c, " + m + ")", "mul(" + m + ", c)", "mul(c, transpose(" + m + "))",
        "determinant(" + m + ") / 100", "mul(" + m + ", " + m + ")[1]"};
    const auto row = [=](bool isLeft) {
        return [=](const Numbers& a, const Numbers& b, const Numbers& c) {
            Numbers r{};
            for (int i = 0; i < 4; ++i)
                for (int j = 0; j < 4; ++j)
                    r[static_cast<size_t>(i)] +=
                        c[static_cast<size_t>(j)] *
                        (isLeft ? matrix(a, b, c, j, i) : matrix(a, b, c, i, j));
            return r;
        };
    };
    TestRows({
        {texts[0].c_str(), row(true), 1e-5},
        {texts[1].c_str(), row(false), 1e-5},
        {texts[2].c_str(), row(false), 1e-5},
        {texts[3].c_str(),
         [=](const Numbers& a, const Numbers& b, const Numbers& c) {
             double sum = 0; // over all orders of the columns
             int order[] = {0, 1, 2, 3};
             do {
                 double product = 1;
                 for (int i = 0; i < 4; ++i) {
                     product *= matrix(a, b, c, i, order[i]);
                     for (int j = 0; j < i; ++j)
                         product *= order[j] > order[i] ? -1 : 1;
                 }
                 sum += product;
             } while (std::next_permutation(order, order + 4));
             sum /= 100;
             return Numbers{sum, sum, sum, sum};
         },
         2e-5},
        {texts[4].c_str(),
         [=](const Numbers& a, const Numbers& b, const Numbers& c) {
             Numbers r{};
             for (int i = 0; i < 4; ++i)
                 for (int k = 0; k < 4; ++k)
                     r[static_cast<size_t>(i)] += matrix(a, b, c, 1, k) * matrix(a, b, c, k, i);
             return r;
         },
         1e-5},
        {"float4(determinant(float3x3(a.xyz, b.xyz, c.xyz)), determinant(float2x2(a)), 1, 2)",
         [](auto& a, auto& b, auto& c) {
             const double d = a[0] * (b[1] * c[2] - b[2] * c[1]) -
                              a[1] * (b[0] * c[2] - b[2] * c[0]) +
                              a[2] * (b[0] * c[1] - b[1] * c[0]);
             return Numbers{d, a[0] * a[3] - a[1] * a[2], 1, 2};
         },
         2e-5},
        {"float4(mul(a.xyz, float3x4(a, b, c)))",
         [](auto& a, auto& b, auto& c) {
             Numbers r{};
             for (size_t i = 0; i < 4; ++i)
                 r[i] = a[0] * a[i] + a[1] * b[i] + a[2] * c[i];
             return r;
         },
         1e-5},
        {"mul(a.x, b)",
         [](auto& a, auto& b, auto&) {
             return Numbers{a[0] * b[0], a[0] * b[1], a[0] * b[2], a[0] * b[3]};
         }},
        {"mul(a, b)", ForAll([](auto& a, auto& b, auto&) { return DotOf(a, b, 4); }), 1e-5},
    });
}

} // namespace headless::hl
