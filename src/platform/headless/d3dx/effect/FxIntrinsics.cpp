#include "platform/headless/d3dx/effect/FxIntrinsics.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace headless::fx {

namespace {

using Shapes = std::span<const FxShape>;
using Numbers = std::span<const FxNumber>;

// ---- By component

/// All arguments have the same dimensions; scalars fit any.
bool SameForm(Shapes arguments, FxShape& resultOut)
{
    resultOut = {D3DXPT_FLOAT, 1, 1};
    for (const FxShape& shape : arguments) {
        if (shape.IsScalar())
            continue;
        if (!resultOut.IsScalar() && !resultOut.HasSameForm(shape))
            return false;
        resultOut.rows = shape.rows;
        resultOut.columns = shape.columns;
    }
    return true;
}

void ByComponent(const FxIntrinsic& self, Numbers arguments, FxNumber& resultInOut)
{
    const auto value = [&](size_t argument, UINT i) {
        return argument < arguments.size() ? static_cast<double>(arguments[argument].Float(i))
                                           : 0.0;
    };
    for (UINT i = 0; i < resultInOut.shape.Count(); ++i)
        resultInOut.SetFloat(
            i, static_cast<float>(self.component(value(0, i), value(1, i), value(2, i))));
}

double Saturate(double a)
{
    return std::min(std::max(a, 0.0), 1.0);
}

double SmoothStep(double low, double high, double x)
{
    const double t = Saturate((x - low) / (high - low));
    return t * t * (3.0 - 2.0 * t);
}

double Sign(double a)
{
    return a > 0.0 ? 1.0 : a < 0.0 ? -1.0 : 0.0;
}

constexpr double kDegrees = 180.0 / std::numbers::pi;

// ---- Vectors and matrices

bool IsVector(const FxShape& shape)
{
    return shape.rows == 1;
}

double Dot(const FxNumber& a, const FxNumber& b)
{
    double sum = 0.0;
    for (UINT i = 0; i < std::max(a.shape.Count(), b.shape.Count()); ++i)
        sum += static_cast<double>(a.Float(i)) * static_cast<double>(b.Float(i));
    return sum;
}

bool ScalarOfVectors(Shapes arguments, FxShape& resultOut)
{
    const bool fits = SameForm(arguments, resultOut) && IsVector(resultOut);
    resultOut = {D3DXPT_FLOAT, 1, 1};
    return fits;
}

void RunDot(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    resultInOut.SetFloat(0, static_cast<float>(Dot(arguments[0], arguments[1])));
}

void RunLength(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    resultInOut.SetFloat(0, static_cast<float>(std::sqrt(Dot(arguments[0], arguments[0]))));
}

void RunDistance(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const UINT count = std::max(arguments[0].shape.Count(), arguments[1].shape.Count());
    double sum = 0.0;
    for (UINT i = 0; i < count; ++i) {
        const double step =
            static_cast<double>(arguments[0].Float(i)) - static_cast<double>(arguments[1].Float(i));
        sum += step * step;
    }
    resultInOut.SetFloat(0, static_cast<float>(std::sqrt(sum)));
}

bool SameVector(Shapes arguments, FxShape& resultOut)
{
    return SameForm(arguments, resultOut) && IsVector(resultOut);
}

/// A zero-length vector is returned unchanged.
void RunNormalize(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const double length = std::sqrt(Dot(arguments[0], arguments[0]));
    for (UINT i = 0; i < resultInOut.shape.Count(); ++i) {
        const double value = static_cast<double>(arguments[0].Float(i));
        resultInOut.SetFloat(i, static_cast<float>(length > 0.0 ? value / length : value));
    }
}

bool CrossShape(Shapes arguments, FxShape& resultOut)
{
    resultOut = {D3DXPT_FLOAT, 1, 3};
    return arguments[0].HasSameForm(resultOut) && arguments[1].HasSameForm(resultOut);
}

void RunCross(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const auto a = [&](UINT i) { return static_cast<double>(arguments[0].Float(i % 3)); };
    const auto b = [&](UINT i) { return static_cast<double>(arguments[1].Float(i % 3)); };
    for (UINT i = 0; i < 3; ++i)
        resultInOut.SetFloat(i, static_cast<float>(a(i + 1) * b(i + 2) - a(i + 2) * b(i + 1)));
}

bool TransposeShape(Shapes arguments, FxShape& resultOut)
{
    resultOut = {D3DXPT_FLOAT, arguments[0].columns, arguments[0].rows};
    return !IsVector(arguments[0]);
}

void RunTranspose(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const FxShape& from = arguments[0].shape;
    for (UINT row = 0; row < from.rows; ++row)
        for (UINT column = 0; column < from.columns; ++column)
            resultInOut.SetFloat(column * from.rows + row,
                                 arguments[0].Float(row * from.columns + column));
}

/// A vector on the left is a row, on the right a column; a scalar scales; two vectors give their
/// dot product.
bool MulShape(Shapes arguments, FxShape& resultOut)
{
    const FxShape& a = arguments[0];
    const FxShape& b = arguments[1];
    if (a.IsScalar() || b.IsScalar())
        return SameForm(arguments, resultOut);
    if (IsVector(a) && IsVector(b))
        return ScalarOfVectors(arguments, resultOut);
    resultOut = {D3DXPT_FLOAT, a.rows, b.columns};
    if (!IsVector(b))
        return a.columns == b.rows;
    resultOut = {D3DXPT_FLOAT, 1, a.rows};
    return a.columns == b.columns;
}

void RunMul(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const FxNumber& a = arguments[0];
    const FxNumber& b = arguments[1];
    if (a.shape.IsScalar() || b.shape.IsScalar()) {
        for (UINT i = 0; i < resultInOut.shape.Count(); ++i)
            resultInOut.SetFloat(i, a.Float(i) * b.Float(i));
        return;
    }
    if (IsVector(a.shape) && IsVector(b.shape)) {
        resultInOut.SetFloat(0, static_cast<float>(Dot(a, b)));
        return;
    }
    const bool isColumn = IsVector(b.shape);
    const UINT columns = isColumn ? 1 : b.shape.columns;
    for (UINT row = 0; row < a.shape.rows; ++row) {
        for (UINT column = 0; column < columns; ++column) {
            double sum = 0.0;
            for (UINT i = 0; i < a.shape.columns; ++i)
                sum += static_cast<double>(a.Float(row * a.shape.columns + i)) *
                       static_cast<double>(b.Float(isColumn ? i : i * columns + column));
            resultInOut.SetFloat(row * columns + column, static_cast<float>(sum));
        }
    }
}

bool DeterminantShape(Shapes arguments, FxShape& resultOut)
{
    resultOut = {D3DXPT_FLOAT, 1, 1};
    return !IsVector(arguments[0]) && arguments[0].rows == arguments[0].columns;
}

/// By elimination, with the largest number of a column as its pivot.
void RunDeterminant(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const UINT size = arguments[0].shape.rows;
    double m[4][4] = {};
    for (UINT i = 0; i < size * size; ++i)
        m[i / size][i % size] = static_cast<double>(arguments[0].Float(i));
    double product = 1.0;
    for (UINT column = 0; column < size; ++column) {
        UINT pivot = column;
        for (UINT row = column + 1; row < size; ++row)
            pivot = std::fabs(m[row][column]) > std::fabs(m[pivot][column]) ? row : pivot;
        if (pivot != column) {
            std::swap(m[pivot], m[column]);
            product = -product;
        }
        product *= m[column][column];
        for (UINT row = column + 1; row < size && m[column][column] != 0.0; ++row) {
            const double share = m[row][column] / m[column][column];
            for (UINT i = column; i < size; ++i)
                m[row][i] -= share * m[column][i];
        }
    }
    resultInOut.SetFloat(0, static_cast<float>(product));
}

void RunReflect(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const double twice = 2.0 * Dot(arguments[0], arguments[1]);
    for (UINT i = 0; i < resultInOut.shape.Count(); ++i)
        resultInOut.SetFloat(
            i, static_cast<float>(static_cast<double>(arguments[0].Float(i)) -
                                  twice * static_cast<double>(arguments[1].Float(i))));
}

bool RefractShape(Shapes arguments, FxShape& resultOut)
{
    return arguments[2].IsScalar() && SameVector(arguments.first(2), resultOut);
}

/// The law of Snell; 0 where nothing passes.
void RunRefract(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const auto eta = static_cast<double>(arguments[2].Float(0));
    const double slope = Dot(arguments[0], arguments[1]);
    const double under = 1.0 - eta * eta * (1.0 - slope * slope);
    const double along = under < 0.0 ? 0.0 : eta * slope + std::sqrt(under);
    for (UINT i = 0; i < resultInOut.shape.Count(); ++i) {
        const double bent = eta * static_cast<double>(arguments[0].Float(i)) -
                            along * static_cast<double>(arguments[1].Float(i));
        resultInOut.SetFloat(i, under < 0.0 ? 0.0f : static_cast<float>(bent));
    }
}

/// Turns a normal towards the viewer.
void RunFaceForward(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const bool isFront = Dot(arguments[1], arguments[2]) < 0.0;
    for (UINT i = 0; i < resultInOut.shape.Count(); ++i)
        resultInOut.SetFloat(i, isFront ? arguments[0].Float(i) : -arguments[0].Float(i));
}

bool LitShape(Shapes arguments, FxShape& resultOut)
{
    resultOut = {D3DXPT_FLOAT, 1, 4};
    return arguments[0].IsScalar() && arguments[1].IsScalar() && arguments[2].IsScalar();
}

void RunLit(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    const float diffuse = arguments[0].Float(0), half = arguments[1].Float(0);
    const bool isLit = diffuse >= 0.0f && half >= 0.0f;
    const double power =
        std::pow(static_cast<double>(half), static_cast<double>(arguments[2].Float(0)));
    resultInOut.SetFloat(0, 1.0f);
    resultInOut.SetFloat(1, std::max(diffuse, 0.0f));
    resultInOut.SetFloat(2, isLit ? static_cast<float>(power) : 0.0f);
    resultInOut.SetFloat(3, 1.0f);
}

bool BytesShape(Shapes arguments, FxShape& resultOut)
{
    resultOut = {D3DXPT_INT, 1, 4};
    return arguments[0].HasSameForm(resultOut);
}

/// A little more than 255, so that numbers which were bytes come back as they were.
void RunBytes(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    for (UINT i = 0; i < 4; ++i) {
        const double scaled =
            static_cast<double>(arguments[0].Float(i == 3 ? 3 : 2 - i)) * kFxBytesOfColour;
        resultInOut.cells[i] = FxCellOfFloat(static_cast<float>(std::floor(scaled)), D3DXPT_INT);
    }
}

bool SameTruths(Shapes arguments, FxShape& resultOut)
{
    const bool fits = SameForm(arguments, resultOut);
    resultOut.type = D3DXPT_BOOL;
    return fits;
}

void TruthByComponent(const FxIntrinsic& self, Numbers arguments, FxNumber& resultInOut)
{
    for (UINT i = 0; i < resultInOut.shape.Count(); ++i) {
        const auto value = static_cast<double>(arguments[0].Float(i));
        resultInOut.cells[i] = self.component(value, 0.0, 0.0) != 0.0 ? 1 : 0;
    }
}

bool TruthShape(Shapes, FxShape& resultOut)
{
    resultOut = {D3DXPT_BOOL, 1, 1};
    return true;
}

void RunAny(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    for (UINT i = 0; i < arguments[0].shape.Count(); ++i)
        resultInOut.cells[0] |= arguments[0].Bool(i) ? 1u : 0u;
}

void RunAll(const FxIntrinsic&, Numbers arguments, FxNumber& resultInOut)
{
    resultInOut.cells[0] = 1;
    for (UINT i = 0; i < arguments[0].shape.Count(); ++i)
        resultInOut.cells[0] &= arguments[0].Bool(i) ? 1u : 0u;
}

using D = double;

constexpr FxIntrinsic kIntrinsics[] = {
    {"abs", 1, SameForm, ByComponent, [](D a, D, D) { return std::fabs(a); }},
    {"acos", 1, SameForm, ByComponent, [](D a, D, D) { return std::acos(a); }},
    {"asin", 1, SameForm, ByComponent, [](D a, D, D) { return std::asin(a); }},
    {"atan", 1, SameForm, ByComponent, [](D a, D, D) { return std::atan(a); }},
    {"atan2", 2, SameForm, ByComponent, [](D a, D b, D) { return std::atan2(a, b); }},
    {"ceil", 1, SameForm, ByComponent, [](D a, D, D) { return std::ceil(a); }},
    {"clamp", 3, SameForm, ByComponent, [](D a, D b, D c) { return std::min(std::max(a, b), c); }},
    {"cos", 1, SameForm, ByComponent, [](D a, D, D) { return std::cos(a); }},
    {"degrees", 1, SameForm, ByComponent, [](D a, D, D) { return a * kDegrees; }},
    {"exp", 1, SameForm, ByComponent, [](D a, D, D) { return std::exp(a); }},
    {"exp2", 1, SameForm, ByComponent, [](D a, D, D) { return std::exp2(a); }},
    {"floor", 1, SameForm, ByComponent, [](D a, D, D) { return std::floor(a); }},
    {"fmod", 2, SameForm, ByComponent, [](D a, D b, D) { return std::fmod(a, b); }},
    {"frac", 1, SameForm, ByComponent, [](D a, D, D) { return a - std::floor(a); }},
    {"lerp", 3, SameForm, ByComponent, [](D a, D b, D c) { return a + c * (b - a); }},
    {"log", 1, SameForm, ByComponent, [](D a, D, D) { return std::log(a); }},
    {"log2", 1, SameForm, ByComponent, [](D a, D, D) { return std::log2(a); }},
    {"log10", 1, SameForm, ByComponent, [](D a, D, D) { return std::log10(a); }},
    {"max", 2, SameForm, ByComponent, [](D a, D b, D) { return std::max(a, b); }},
    {"min", 2, SameForm, ByComponent, [](D a, D b, D) { return std::min(a, b); }},
    {"pow", 2, SameForm, ByComponent, [](D a, D b, D) { return std::pow(a, b); }},
    {"radians", 1, SameForm, ByComponent, [](D a, D, D) { return a / kDegrees; }},
    {"round", 1, SameForm, ByComponent, [](D a, D, D) { return std::nearbyint(a); }},
    {"rsqrt", 1, SameForm, ByComponent, [](D a, D, D) { return 1.0 / std::sqrt(a); }},
    {"saturate", 1, SameForm, ByComponent, [](D a, D, D) { return Saturate(a); }},
    {"sign", 1, SameForm, ByComponent, [](D a, D, D) { return Sign(a); }},
    {"sin", 1, SameForm, ByComponent, [](D a, D, D) { return std::sin(a); }},
    {"smoothstep", 3, SameForm, ByComponent, [](D a, D b, D c) { return SmoothStep(a, b, c); }},
    {"sqrt", 1, SameForm, ByComponent, [](D a, D, D) { return std::sqrt(a); }},
    {"step", 2, SameForm, ByComponent, [](D a, D b, D) { return b >= a ? 1.0 : 0.0; }},
    {"tan", 1, SameForm, ByComponent, [](D a, D, D) { return std::tan(a); }},
    {"cosh", 1, SameForm, ByComponent, [](D a, D, D) { return std::cosh(a); }},
    {"ldexp", 2, SameForm, ByComponent, [](D a, D b, D) { return a * std::exp2(b); }},
    {"sinh", 1, SameForm, ByComponent, [](D a, D, D) { return std::sinh(a); }},
    {"tanh", 1, SameForm, ByComponent, [](D a, D, D) { return std::tanh(a); }},
    {"trunc", 1, SameForm, ByComponent, [](D a, D, D) { return std::trunc(a); }},
    {"isfinite", 1, SameTruths, TruthByComponent,
     [](D a, D, D) { return std::isfinite(a) ? 1.0 : 0.0; }},
    {"isinf", 1, SameTruths, TruthByComponent, [](D a, D, D) { return std::isinf(a) ? 1.0 : 0.0; }},
    {"isnan", 1, SameTruths, TruthByComponent, [](D a, D, D) { return std::isnan(a) ? 1.0 : 0.0; }},
    {"D3DCOLORtoUBYTE4", 1, BytesShape, RunBytes, nullptr},
    {"determinant", 1, DeterminantShape, RunDeterminant, nullptr},
    {"faceforward", 3, SameVector, RunFaceForward, nullptr},
    {"lit", 3, LitShape, RunLit, nullptr},
    {"reflect", 2, SameVector, RunReflect, nullptr},
    {"refract", 3, RefractShape, RunRefract, nullptr},
    {"all", 1, TruthShape, RunAll, nullptr},
    {"any", 1, TruthShape, RunAny, nullptr},
    {"cross", 2, CrossShape, RunCross, nullptr},
    {"distance", 2, ScalarOfVectors, RunDistance, nullptr},
    {"dot", 2, ScalarOfVectors, RunDot, nullptr},
    {"length", 1, ScalarOfVectors, RunLength, nullptr},
    {"mul", 2, MulShape, RunMul, nullptr},
    {"normalize", 1, SameVector, RunNormalize, nullptr},
    {"transpose", 1, TransposeShape, RunTranspose, nullptr},
};

} // namespace

const FxIntrinsic* FxFindIntrinsic(std::string_view name)
{
    for (const FxIntrinsic& intrinsic : kIntrinsics)
        if (intrinsic.name == name)
            return &intrinsic;
    return nullptr;
}

} // namespace headless::fx
