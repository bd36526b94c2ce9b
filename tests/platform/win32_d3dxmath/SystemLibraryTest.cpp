// Compares our mathematics with that of the system's d3dx9_30.dll, over random arguments.

#include <algorithm>
#include <bit>
#include <cmath>
#include <d3dx9.h>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

constexpr int kRounds = 20000;
constexpr double kUlp = 1.1920928955078125e-7; // of 1: 2^-23

struct FreeModule {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};

HMODULE SystemLibrary()
{
    static const std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeModule> library(
        LoadLibraryA("d3dx9_30.dll"));
    return library.get();
}

/// The system's function of that name, with our signature; null if there is none.
template <class Function>
Function System(Function, const char* name)
{
    return std::bit_cast<Function>(GetProcAddress(SystemLibrary(), name));
}

/// What this program imports by name from `library`, according to its import table.
std::vector<std::string> ImportsFrom(const char* library)
{
    const auto* image = std::bit_cast<const BYTE*>(GetModuleHandleA(nullptr));
    const auto& dos = *std::bit_cast<const IMAGE_DOS_HEADER*>(image);
    const auto& headers = *std::bit_cast<const IMAGE_NT_HEADERS*>(image + dos.e_lfanew);
    const auto& directory = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    std::vector<std::string> names;
    for (const auto* entry =
             std::bit_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + directory.VirtualAddress);
         entry->Name != 0; ++entry) {
        if (lstrcmpiA(std::bit_cast<const char*>(image + entry->Name), library) != 0)
            continue;
        for (const auto* thunk =
                 std::bit_cast<const IMAGE_THUNK_DATA*>(image + entry->OriginalFirstThunk);
             thunk->u1.AddressOfData != 0; ++thunk) {
            const auto* byName =
                std::bit_cast<const IMAGE_IMPORT_BY_NAME*>(image + thunk->u1.AddressOfData);
            names.emplace_back(std::bit_cast<const char*>(&byName->Name[0]));
        }
    }
    return names;
}

using Range = std::pair<float, float>;
constexpr Range kAngle{-20.0f, 20.0f};

/// Random arguments by type, the same in each run. A float takes the next range.
class Arguments {
public:
    explicit Arguments(std::vector<Range> ranges) : floatRanges(std::move(ranges)) {}

    template <class Value>
    Value Make()
    {
        if constexpr (std::is_same_v<Value, FLOAT>) {
            const Range range = floatRanges[nextRange++ % floatRanges.size()];
            return In(range.first, range.second);
        } else {
            Value value;
            auto* numbers = reinterpret_cast<float*>(&value);
            for (size_t i = 0; i < sizeof value / sizeof(float); ++i)
                numbers[i] = In(-10, 10);
            if constexpr (std::is_same_v<Value, D3DXQUATERNION>)
                return Unit(value);
            return value;
        }
    }

private:
    float In(float low, float high)
    {
        return std::uniform_real_distribution<float>(low, high)(engine);
    }

    /// In doubles, so that no function under test is used.
    static D3DXQUATERNION Unit(const D3DXQUATERNION& q)
    {
        const double x = q.x, y = q.y, z = q.z, w = q.w;
        const double length = std::sqrt(x * x + y * y + z * z + w * w);
        return {static_cast<float>(x / length), static_cast<float>(y / length),
                static_cast<float>(z / length), static_cast<float>(w / length)};
    }

    std::mt19937 engine{20060401};
    std::vector<Range> floatRanges;
    size_t nextRange = 0;
};

/// How a parameter is passed: records by pointer, floats by value.
template <class Parameter>
using Held = std::remove_const_t<std::remove_pointer_t<Parameter>>;

template <class Parameter>
Parameter Pass(const Held<Parameter>& held)
{
    if constexpr (std::is_pointer_v<Parameter>)
        return &held;
    else
        return held;
}

double LargestDifference(const float* a, const float* b, size_t count)
{
    double largest = 0;
    for (size_t i = 0; i < count; ++i)
        if (std::bit_cast<unsigned>(a[i]) != std::bit_cast<unsigned>(b[i]))
            largest = std::max(largest, std::fabs(static_cast<double>(a[i]) - b[i]));
    return largest;
}

/// The largest difference between our results and the system's; infinite if there is no system
/// function.
template <class Result, class... Parameters>
double Difference(Result*(WINAPI* ours)(Result*, Parameters...), const char* name,
                  std::vector<Range> ranges = {kAngle})
{
    const auto theirs = System(ours, name);
    if (theirs == nullptr)
        return HUGE_VAL;
    Arguments arguments(std::move(ranges));
    double largest = 0;
    for (int round = 0; round < kRounds; ++round) {
        const std::tuple<Held<Parameters>...> held{arguments.Make<Held<Parameters>>()...};
        Result a, b;
        std::apply(
            [&](const Held<Parameters>&... values) {
                ours(&a, Pass<Parameters>(values)...);
                theirs(&b, Pass<Parameters>(values)...);
            },
            held);
        largest = std::max(largest, LargestDifference(reinterpret_cast<const float*>(&a),
                                                      reinterpret_cast<const float*>(&b),
                                                      sizeof(Result) / sizeof(float)));
    }
    return largest;
}

/// The sum of the absolute products in the determinant of the remaining elements: the scale of its
/// possible rounding error. `skipRow` and `skipColumn` of 4 skip none.
double SumOfProducts(const D3DXMATRIX& matrix, int skipRow = 4, int skipColumn = 4)
{
    std::vector<int> columns;
    for (int column = 0; column < 4; ++column)
        if (column != skipColumn)
            columns.push_back(column);
    double sum = 0;
    do {
        double product = 1;
        size_t next = 0;
        for (int row = 0; row < 4; ++row)
            if (row != skipRow)
                product *= std::fabs(static_cast<double>(matrix.m[row][columns[next++]]));
        sum += product;
    } while (std::next_permutation(columns.begin(), columns.end()));
    return sum;
}

} // namespace

TEST(SystemLibrary, NoMathematicsIsImported)
{
    const std::vector<std::string> names = ImportsFrom("d3dx9_30.dll");
    for (const std::string& name : names)
        for (const char* family : {"D3DXMatrix", "D3DXVec", "D3DXQuaternion", "D3DXPlane"})
            EXPECT_NE(name.rfind(family, 0), 0u) << name;
    EXPECT_FALSE(ImportsFrom("kernel32.dll").empty()) << "the table was not found";
}

TEST(SystemLibrary, PlainArithmeticAgreesToTheBit)
{
    ASSERT_NE(SystemLibrary(), nullptr);
    EXPECT_EQ(Difference(&D3DXMatrixMultiply, "D3DXMatrixMultiply"), 0.0);
    EXPECT_EQ(Difference(&D3DXMatrixMultiplyTranspose, "D3DXMatrixMultiplyTranspose"), 0.0);
    EXPECT_EQ(Difference(&D3DXMatrixTranspose, "D3DXMatrixTranspose"), 0.0);
    EXPECT_EQ(Difference(&D3DXMatrixTranslation, "D3DXMatrixTranslation"), 0.0);
    EXPECT_EQ(Difference(&D3DXMatrixScaling, "D3DXMatrixScaling"), 0.0);
    EXPECT_EQ(Difference(&D3DXMatrixRotationQuaternion, "D3DXMatrixRotationQuaternion"), 0.0);
    EXPECT_EQ(Difference(&D3DXMatrixLookAtLH, "D3DXMatrixLookAtLH"), 0.0);
    EXPECT_EQ(Difference(&D3DXVec2Normalize, "D3DXVec2Normalize"), 0.0);
    EXPECT_EQ(Difference(&D3DXVec2TransformCoord, "D3DXVec2TransformCoord"), 0.0);
    EXPECT_EQ(Difference(&D3DXVec2TransformNormal, "D3DXVec2TransformNormal"), 0.0);
    EXPECT_EQ(Difference(&D3DXVec3Normalize, "D3DXVec3Normalize"), 0.0);
    EXPECT_EQ(Difference(&D3DXVec3Transform, "D3DXVec3Transform"), 0.0);
    EXPECT_EQ(Difference(&D3DXVec3TransformCoord, "D3DXVec3TransformCoord"), 0.0);
    EXPECT_EQ(Difference(&D3DXVec3TransformNormal, "D3DXVec3TransformNormal"), 0.0);
    EXPECT_EQ(Difference(&D3DXVec4Normalize, "D3DXVec4Normalize"), 0.0);
    EXPECT_EQ(Difference(&D3DXVec4Transform, "D3DXVec4Transform"), 0.0);
    EXPECT_EQ(Difference(&D3DXPlaneNormalize, "D3DXPlaneNormalize"), 0.0);
    EXPECT_EQ(Difference(&D3DXPlaneFromPointNormal, "D3DXPlaneFromPointNormal"), 0.0);
    EXPECT_EQ(Difference(&D3DXPlaneFromPoints, "D3DXPlaneFromPoints"), 0.0);
    EXPECT_EQ(Difference(&D3DXQuaternionMultiply, "D3DXQuaternionMultiply"), 0.0);
    EXPECT_EQ(Difference(&D3DXQuaternionNormalize, "D3DXQuaternionNormalize"), 0.0);
    EXPECT_EQ(Difference(&D3DXQuaternionInverse, "D3DXQuaternionInverse"), 0.0);
}

TEST(SystemLibrary, ProjectionsWithoutAnglesAgreeToTheBit)
{
    const Range size{0.1f, 4.0f}, below{-10.0f, -0.1f}, above{0.1f, 10.0f};
    const Range nearZ{0.01f, 10.0f}, farZ{20.0f, 1000.0f};
    EXPECT_EQ(
        Difference(&D3DXMatrixPerspectiveLH, "D3DXMatrixPerspectiveLH", {size, size, nearZ, farZ}),
        0.0);
    EXPECT_EQ(Difference(&D3DXMatrixOrthoLH, "D3DXMatrixOrthoLH", {size, size, nearZ, farZ}), 0.0);
    EXPECT_EQ(Difference(&D3DXMatrixOrthoOffCenterLH, "D3DXMatrixOrthoOffCenterLH",
                         {below, above, below, above, nearZ, farZ}),
              0.0);
}

// All numbers of a rotation are in [-1, 1] and sums of such numbers, so 2 ulp means ulps of 1. The
// system computes sine and cosine in float; ours are rounded from double.
TEST(SystemLibrary, RotationsAgreeWithinTwoUlp)
{
    EXPECT_LE(Difference(&D3DXMatrixRotationX, "D3DXMatrixRotationX"), 2 * kUlp);
    EXPECT_LE(Difference(&D3DXMatrixRotationY, "D3DXMatrixRotationY"), 2 * kUlp);
    EXPECT_LE(Difference(&D3DXMatrixRotationZ, "D3DXMatrixRotationZ"), 2 * kUlp);
    EXPECT_LE(Difference(&D3DXMatrixRotationAxis, "D3DXMatrixRotationAxis"), 2 * kUlp);
    EXPECT_LE(Difference(&D3DXMatrixRotationYawPitchRoll, "D3DXMatrixRotationYawPitchRoll"),
              2 * kUlp);
    EXPECT_LE(Difference(&D3DXQuaternionRotationAxis, "D3DXQuaternionRotationAxis"), 2 * kUlp);
    EXPECT_LE(Difference(&D3DXQuaternionRotationYawPitchRoll, "D3DXQuaternionRotationYawPitchRoll"),
              2 * kUlp);
    EXPECT_LE(Difference(&D3DXQuaternionSlerp, "D3DXQuaternionSlerp", {{-1.0f, 2.0f}}), 2 * kUlp);
}

TEST(SystemLibrary, QuaternionOfARotationAgreesWithinTwoUlp)
{
    const auto theirs = System(&D3DXQuaternionRotationMatrix, "D3DXQuaternionRotationMatrix");
    ASSERT_NE(theirs, nullptr);
    Arguments arguments({kAngle});
    for (int round = 0; round < kRounds; ++round) {
        const auto q = arguments.Make<D3DXQUATERNION>();
        D3DXMATRIX matrix;
        D3DXMatrixRotationQuaternion(&matrix, &q);
        D3DXQUATERNION a, b;
        D3DXQuaternionRotationMatrix(&a, &matrix);
        theirs(&b, &matrix);
        ASSERT_LE(LargestDifference(&a.x, &b.x, 4), 2 * kUlp) << round;
    }
}

TEST(SystemLibrary, AngleOfAQuaternionAgreesWithinTwoUlp)
{
    const auto theirs = System(&D3DXQuaternionToAxisAngle, "D3DXQuaternionToAxisAngle");
    ASSERT_NE(theirs, nullptr);
    Arguments arguments({kAngle});
    for (int round = 0; round < kRounds; ++round) {
        const auto q = arguments.Make<D3DXQUATERNION>();
        D3DXVECTOR3 axisA, axisB;
        float a, b;
        D3DXQuaternionToAxisAngle(&q, &axisA, &a);
        theirs(&q, &axisB, &b);
        ASSERT_TRUE(axisA == axisB) << round;
        ASSERT_NEAR(a, b, 2 * kUlp * a) << round;
    }
}

// An exception to 2 ulp: the system's float tangent is itself up to 2 ulp off in one case out of
// eight, and the quotient doubles that if it crosses a power of two.
TEST(SystemLibrary, PerspectiveFromAnAngleAgreesWithinFourUlp)
{
    const auto theirs = System(&D3DXMatrixPerspectiveFovLH, "D3DXMatrixPerspectiveFovLH");
    ASSERT_NE(theirs, nullptr);
    Arguments arguments({{0.1f, 3.0f}, {0.5f, 2.0f}, {0.01f, 10.0f}, {20.0f, 1000.0f}});
    for (int round = 0; round < kRounds; ++round) {
        const auto fov = arguments.Make<FLOAT>(), aspect = arguments.Make<FLOAT>();
        const auto nearZ = arguments.Make<FLOAT>(), farZ = arguments.Make<FLOAT>();
        D3DXMATRIX a, b;
        D3DXMatrixPerspectiveFovLH(&a, fov, aspect, nearZ, farZ);
        theirs(&b, fov, aspect, nearZ, farZ);
        ASSERT_NEAR(a._11, b._11, 4 * kUlp * a._11) << round;
        ASSERT_NEAR(a._22, b._22, 4 * kUlp * a._22) << round;
        a._11 = b._11;
        a._22 = b._22;
        ASSERT_TRUE(a == b) << round;
    }
}

// Determinants are sums of products that may cancel, and the order of summation is not specified;
// so the ulps are those of the sum of the absolute products.
TEST(SystemLibrary, DeterminantAndInverseAgreeWithinTwoUlpOfTheirProducts)
{
    const auto determinantOf = System(&D3DXMatrixDeterminant, "D3DXMatrixDeterminant");
    const auto inverseOf = System(&D3DXMatrixInverse, "D3DXMatrixInverse");
    ASSERT_TRUE(determinantOf != nullptr && inverseOf != nullptr);
    Arguments arguments({kAngle});
    for (int round = 0; round < kRounds; ++round) {
        const auto matrix = arguments.Make<D3DXMATRIX>();
        const double determinant = D3DXMatrixDeterminant(&matrix);
        const double products = SumOfProducts(matrix);
        ASSERT_NEAR(determinant, determinantOf(&matrix), 2 * kUlp * products) << round;
        if (std::fabs(determinant) < 100 * kUlp * products)
            continue; // too close to singular for the quotient to be meaningful

        D3DXMATRIX a, b;
        D3DXMatrixInverse(&a, nullptr, &matrix);
        inverseOf(&b, nullptr, &matrix);
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column) {
                const double scale =
                    SumOfProducts(matrix, column, row) + std::fabs(a.m[row][column]) * products;
                ASSERT_NEAR(a.m[row][column], b.m[row][column],
                            2 * kUlp * scale / std::fabs(determinant))
                    << round << ": " << row << ", " << column;
            }
    }
}

TEST(SystemLibrary, SingularMatrixGivesNullAndWritesNothingThereToo)
{
    const auto theirs = System(&D3DXMatrixInverse, "D3DXMatrixInverse");
    ASSERT_NE(theirs, nullptr);
    D3DXMATRIX singular, inverse;
    D3DXMatrixScaling(&singular, 1, 0, 1);
    D3DXMatrixIdentity(&inverse);
    float determinant = 5;
    EXPECT_EQ(theirs(&inverse, &determinant, &singular), nullptr);
    EXPECT_TRUE(D3DXMatrixIsIdentity(&inverse));
    EXPECT_EQ(determinant, 5.0f);
}

TEST(SystemLibrary, SlerpTakesTheChordAtTheSameDistance)
{
    const auto theirs = System(&D3DXQuaternionSlerp, "D3DXQuaternionSlerp");
    ASSERT_NE(theirs, nullptr);
    const D3DXQUATERNION from(0, 0, 0, 1);
    for (float gap = 0.0009f; gap < 0.0011f; gap += 1e-6f) {
        const D3DXQUATERNION to(0, 0, std::sqrt(1 - (1 - gap) * (1 - gap)), 1 - gap);
        D3DXQUATERNION a, b;
        D3DXQuaternionSlerp(&a, &from, &to, 0.4f);
        theirs(&b, &from, &to, 0.4f);
        ASSERT_LE(LargestDifference(&a.x, &b.x, 4), 2 * kUlp) << gap;
    }
}
