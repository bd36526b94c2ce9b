// The table of intrinsic functions, and those that work on each number alone.

#include "platform/headless/d3dx/language/HlIntrinsics.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace headless::hl {

namespace {

/// How arguments are brought together before the function sees them.
enum class Form : uint8_t {
    Alike,      ///< floats of one shape
    AlikeWhole, ///< numbers of one shape, whole ones stay so
    Free,
};

} // namespace

struct HlIntrinsics::Row {
    std::string_view name;
    size_t least, most; ///< arguments
    Form form;
    size_t places; ///< the last arguments that are written
    HlValue (HlIntrinsics::*function)(const HlExpression&, Values&);
};

struct HlIntrinsicRows {
    using I = HlIntrinsics;
    static constexpr I::Row kRows[] = {
        {"abs", 1, 1, Form::AlikeWhole, 0, &I::Simple},
        {"acos", 1, 1, Form::Alike, 0, &I::Simple},
        {"all", 1, 1, Form::Free, 0, &I::Truths},
        {"any", 1, 1, Form::Free, 0, &I::Truths},
        {"asin", 1, 1, Form::Alike, 0, &I::Simple},
        {"atan", 1, 1, Form::Alike, 0, &I::Simple},
        {"atan2", 2, 2, Form::Alike, 0, &I::Simple},
        {"ceil", 1, 1, Form::Alike, 0, &I::Simple},
        {"clamp", 3, 3, Form::AlikeWhole, 0, &I::Simple},
        {"clip", 1, 1, Form::Alike, 0, &I::Pixels},
        {"cos", 1, 1, Form::Alike, 0, &I::Simple},
        {"cosh", 1, 1, Form::Alike, 0, &I::Simple},
        {"cross", 2, 2, Form::Free, 0, &I::Vectors},
        {"D3DCOLORtoUBYTE4", 1, 1, Form::Free, 0, &I::Vectors},
        {"ddx", 1, 1, Form::Alike, 0, &I::Pixels},
        {"ddy", 1, 1, Form::Alike, 0, &I::Pixels},
        {"degrees", 1, 1, Form::Alike, 0, &I::Simple},
        {"determinant", 1, 1, Form::Free, 0, &I::Matrices},
        {"distance", 2, 2, Form::Alike, 0, &I::Vectors},
        {"dot", 2, 2, Form::AlikeWhole, 0, &I::Vectors},
        {"exp", 1, 1, Form::Alike, 0, &I::Simple},
        {"exp2", 1, 1, Form::Alike, 0, &I::Simple},
        {"faceforward", 3, 3, Form::Alike, 0, &I::Vectors},
        {"floor", 1, 1, Form::Alike, 0, &I::Simple},
        {"fmod", 2, 2, Form::Alike, 0, &I::Simple},
        {"frac", 1, 1, Form::Alike, 0, &I::Simple},
        {"frexp", 2, 2, Form::Free, 1, &I::Outputs},
        {"fwidth", 1, 1, Form::Alike, 0, &I::Pixels},
        {"isfinite", 1, 1, Form::Alike, 0, &I::Truths},
        {"isinf", 1, 1, Form::Alike, 0, &I::Truths},
        {"isnan", 1, 1, Form::Alike, 0, &I::Truths},
        {"ldexp", 2, 2, Form::Alike, 0, &I::Simple},
        {"length", 1, 1, Form::Alike, 0, &I::Vectors},
        {"lerp", 3, 3, Form::Alike, 0, &I::Simple},
        {"lit", 3, 3, Form::Free, 0, &I::Vectors},
        {"log", 1, 1, Form::Alike, 0, &I::Simple},
        {"log10", 1, 1, Form::Alike, 0, &I::Simple},
        {"log2", 1, 1, Form::Alike, 0, &I::Simple},
        {"max", 2, 2, Form::AlikeWhole, 0, &I::Simple},
        {"min", 2, 2, Form::AlikeWhole, 0, &I::Simple},
        {"modf", 2, 2, Form::Free, 1, &I::Outputs},
        {"mul", 2, 2, Form::Free, 0, &I::Multiply},
        {"noise", 1, 1, Form::Free, 0, &I::Refused},
        {"normalize", 1, 1, Form::Alike, 0, &I::Vectors},
        {"pow", 2, 2, Form::Alike, 0, &I::Simple},
        {"radians", 1, 1, Form::Alike, 0, &I::Simple},
        {"reflect", 2, 2, Form::Alike, 0, &I::Vectors},
        {"refract", 3, 3, Form::Free, 0, &I::Vectors},
        {"round", 1, 1, Form::Alike, 0, &I::Simple},
        {"rsqrt", 1, 1, Form::Alike, 0, &I::Simple},
        {"saturate", 1, 1, Form::Alike, 0, &I::Simple},
        {"sign", 1, 1, Form::Alike, 0, &I::Simple},
        {"sin", 1, 1, Form::Alike, 0, &I::Simple},
        {"sincos", 3, 3, Form::Free, 2, &I::Outputs},
        {"sinh", 1, 1, Form::Alike, 0, &I::Simple},
        {"smoothstep", 3, 3, Form::Alike, 0, &I::Simple},
        {"sqrt", 1, 1, Form::Alike, 0, &I::Simple},
        {"step", 2, 2, Form::Alike, 0, &I::Simple},
        {"tan", 1, 1, Form::Alike, 0, &I::Simple},
        {"tanh", 1, 1, Form::Alike, 0, &I::Simple},
        {"tex1D", 2, 4, Form::Free, 0, &I::Texture},
        {"tex1Dbias", 2, 2, Form::Free, 0, &I::Texture},
        {"tex1Dgrad", 4, 4, Form::Free, 0, &I::Texture},
        {"tex1Dlod", 2, 2, Form::Free, 0, &I::Texture},
        {"tex1Dproj", 2, 2, Form::Free, 0, &I::Texture},
        {"tex2D", 2, 4, Form::Free, 0, &I::Texture},
        {"tex2Dbias", 2, 2, Form::Free, 0, &I::Texture},
        {"tex2Dgrad", 4, 4, Form::Free, 0, &I::Texture},
        {"tex2Dlod", 2, 2, Form::Free, 0, &I::Texture},
        {"tex2Dproj", 2, 2, Form::Free, 0, &I::Texture},
        {"tex3D", 2, 4, Form::Free, 0, &I::Texture},
        {"tex3Dbias", 2, 2, Form::Free, 0, &I::Texture},
        {"tex3Dgrad", 4, 4, Form::Free, 0, &I::Texture},
        {"tex3Dlod", 2, 2, Form::Free, 0, &I::Texture},
        {"tex3Dproj", 2, 2, Form::Free, 0, &I::Texture},
        {"texCUBE", 2, 4, Form::Free, 0, &I::Texture},
        {"texCUBEbias", 2, 2, Form::Free, 0, &I::Texture},
        {"texCUBEgrad", 4, 4, Form::Free, 0, &I::Texture},
        {"texCUBElod", 2, 2, Form::Free, 0, &I::Texture},
        {"texCUBEproj", 2, 2, Form::Free, 0, &I::Texture},
        {"transpose", 1, 1, Form::Free, 0, &I::Matrices},
        {"trunc", 1, 1, Form::Alike, 0, &I::Simple},
    };

    static const I::Row* Find(std::string_view name)
    {
        const auto found = std::find_if(std::begin(kRows), std::end(kRows),
                                        [&](const I::Row& one) { return one.name == name; });
        return found == std::end(kRows) ? nullptr : found;
    }
};

bool HlIntrinsics::Exists(std::string_view name)
{
    return HlIntrinsicRows::Find(name) != nullptr;
}

HlValue HlIntrinsics::Call(const HlExpression& expression)
{
    const Row& found = *HlIntrinsicRows::Find(expression.name);
    Values arguments;
    if (!Prepare(found, expression, arguments))
        return run.ErrorValue();
    row = arguments.empty() || !arguments[0].type->IsNumber() ? 4 : arguments[0].type->columns;
    return (this->*found.function)(expression, arguments);
}

bool HlIntrinsics::Prepare(const Row& found, const HlExpression& expression, Values& argumentsOut)
{
    const size_t count = expression.parts.size();
    const std::string name = "'" + std::string(expression.name) + "'";
    if (count < found.least || count > found.most)
        return run.Fail(expression.place, FxError::TypeMismatch,
                        name + " takes " + std::to_string(found.least) + " arguments, not " +
                            std::to_string(count));
    for (size_t i = 0; i < count - found.places; ++i) {
        argumentsOut.push_back(run.Evaluate(*expression.parts[i]));
        const HlType& type = *argumentsOut.back().type;
        if (type.IsError())
            return false;
        const bool isSampler = i == 0 && expression.name.starts_with("tex");
        if (isSampler ? type.kind != HlKind::Sampler : !type.IsNumber())
            return run.Fail(expression.parts[i]->begin, FxError::TypeMismatch,
                            name + " takes " + (isSampler ? "a sampler" : "a number") + ", not " +
                                HlTypes::Name(type));
    }
    if (!run.Spend(expression.place, 8))
        return false;
    return found.form == Form::Free ||
           Alike(expression, argumentsOut, found.form == Form::AlikeWhole);
}

bool HlIntrinsics::Alike(const HlExpression& expression, Values& arguments, bool keepsWhole)
{
    for (HlValue& value : arguments)
        if (!keepsWhole || value.type->base == HlBase::Bool)
            run.ConvertBase(value, keepsWhole ? HlBase::Int : HlBase::Float);
    for (size_t i = 1; i < arguments.size(); ++i)
        if (!run.Unify(arguments[0], arguments[i], expression.place))
            return false;
    for (HlValue& value : arguments)
        if (!run.Convert(value, *arguments[0].type, expression.place, false))
            return false;
    return true;
}

bool HlIntrinsics::IsVector(const HlExpression& expression, size_t i, HlValue& value,
                            unsigned columns)
{
    return run.Convert(value, *run.unit.types.Vector(HlBase::Float, columns),
                       expression.parts[i]->begin, false);
}

// ---- Parts

HlRefs HlIntrinsics::Negate(HlRefs a)
{
    for (HlRef& ref : a)
        ref = graph.IsUndefined(ref) ? Number(0.0f) : ref.Negated();
    return a;
}

HlRefs HlIntrinsics::Each(HlOp op, const HlRefs& a)
{
    HlRefs result;
    for (const HlRef ref : a)
        result.push_back(graph.One(op, ref));
    return result;
}

/// factors[0] + x * (factors[1] + x * ...).
HlRefs HlIntrinsics::Polynomial(const HlRefs& x, std::initializer_list<float> factors)
{
    auto factor = std::rbegin(factors);
    HlRefs sum = All(x, *factor);
    for (++factor; factor != std::rend(factors); ++factor)
        sum = Add({Mul(sum, x), All(x, *factor)});
    return sum;
}

/// Vertex shaders before 3.0 have no modifier for it.
HlRefs HlIntrinsics::Saturate(const HlRefs& a)
{
    if (graph.Profile().isPixel || graph.Profile().major == 3)
        return Apply(HlOp::Saturate, a);
    const HlRefs held = Apply(HlOp::Max, a, All(a, 0.0f));
    return Apply(HlOp::Min, held, All(a, 1.0f));
}

HlRefs HlIntrinsics::SquareRoot(const HlRefs& a)
{
    return Each(HlOp::Rcp, Each(HlOp::Rsq, a));
}

HlRefs HlIntrinsics::Power(const HlRefs& a, const HlRefs& b)
{
    HlRefs result;
    for (size_t i = 0; i < a.size(); ++i) {
        if (graph.IsValue(b[i], 2.0f))
            result.push_back(graph.One(HlOp::Mul, a[i], a[i]));
        else if (graph.Profile().version == 0xFFFE0101)
            result.push_back(
                graph.One(HlOp::Exp, graph.One(HlOp::Mul, graph.One(HlOp::Log, a[i]), b[i])));
        else
            result.push_back(graph.One(HlOp::Pow, a[i], b[i]));
    }
    return result;
}

HlRefs HlIntrinsics::LessThan(const HlRefs& a, const HlRefs& b)
{
    return graph.Less(a, b, row);
}

HlRefs HlIntrinsics::AtLeast(const HlRefs& a, const HlRefs& b)
{
    return graph.AtLeast(a, b, row);
}

// ---- Angles

/// Handbook of Mathematical Functions 4.4.45: an error below 7e-5.
HlRefs HlIntrinsics::ArcCosine(const HlRefs& x)
{
    const HlRefs size = run.AbsOf(x, row);
    const HlRefs sum = Polynomial(size, {1.5707288f, -0.2121144f, 0.0742610f, -0.0187293f});
    const HlRefs root = SquareRoot(Add({All(x, 1.0f), Negate(size)}));
    const HlRefs right = Mul(root, sum);
    const HlRefs left = Add({All(x, std::numbers::pi_v<float>), Negate(right)});
    return graph.Select(LessThan(x, All(x, 0.0f)), left, right, row);
}

/// Handbook of Mathematical Functions 4.4.47: an error below 1e-5 up to 1; beyond, the angle of the
/// reciprocal.
HlRefs HlIntrinsics::ArcTangent(const HlRefs& x)
{
    const HlRefs size = run.AbsOf(x, row);
    const HlRefs isLarge = LessThan(All(x, 1.0f), size);
    const HlRefs part = graph.Select(isLarge, Each(HlOp::Rcp, size), size, row);
    const HlRefs square = Mul(part, part);
    const HlRefs angle = Mul(
        part, Polynomial(square, {0.9998660f, -0.3302995f, 0.1801410f, -0.0851330f, 0.0208351f}));
    const HlRefs rest = Add({All(x, std::numbers::pi_v<float> / 2), Negate(angle)});
    const HlRefs whole = graph.Select(isLarge, rest, angle, row);
    const HlRefs isBelow = LessThan(x, All(x, 0.0f));
    return graph.Select(isBelow, Negate(whole), whole, row);
}

/// The sine of whole turns, for vs 1.1: folded to a quarter turn, then a series up to the ninth power.
HlRefs HlIntrinsics::TurnedSine(const HlRefs& turns)
{
    const HlRefs half = All(turns, 0.5f), quarter = All(turns, 0.25f);
    const HlRefs centred = Add({run.FractionOf(Add(turns, half), row), Negate(half)});
    const HlRefs folded =
        Add(quarter, Negate(run.AbsOf(Add({run.AbsOf(centred, row), Negate(quarter)}), row)));
    const HlRefs angle = Scale(folded, 2 * std::numbers::pi_v<float>);
    const HlRefs series =
        Polynomial(Mul(angle, angle), {1.0f, -1.0f / 6, 1.0f / 120, -1.0f / 5040, 1.0f / 362880});
    const HlRefs sine = Mul(angle, series);
    const HlRefs isBelow = LessThan(centred, All(turns, 0.0f));
    return graph.Select(isBelow, Negate(sine), sine, row);
}

/// The instruction takes angles from -pi to pi.
void HlIntrinsics::SineCosine(const HlRefs& x, HlRefs* sineOut, HlRefs* cosineOut)
{
    const HlRefs turns = Scale(x, 0.5f / std::numbers::pi_v<float>);
    if (graph.Profile().version == 0xFFFE0101) {
        if (sineOut)
            *sineOut = TurnedSine(turns);
        if (cosineOut)
            *cosineOut = TurnedSine(Add(turns, All(turns, 0.25f)));
        return;
    }
    const HlRefs part = run.FractionOf(Add(turns, All(x, 0.5f)), row);
    const HlRefs angle =
        Add({Scale(part, 2 * std::numbers::pi_v<float>), All(x, -std::numbers::pi_v<float>)});
    for (const HlRef ref : angle) {
        if (const std::optional<float> known = graph.ValueOf(ref)) {
            if (sineOut)
                sineOut->push_back(Number(static_cast<float>(std::sin(double{*known}))));
            if (cosineOut)
                cosineOut->push_back(Number(static_cast<float>(std::cos(double{*known}))));
            continue;
        }
        const HlRefs source[] = {{ref}};
        const uint32_t node = graph.Wide(HlOp::SinCos, 2, 0, source);
        if (sineOut)
            sineOut->emplace_back(node, 1u);
        if (cosineOut)
            cosineOut->emplace_back(node, 0u);
    }
}

HlRefs HlIntrinsics::Trigonometry(std::string_view name, Values& a)
{
    const HlRefs& x = a[0].refs;
    HlRefs sine, cosine;
    if (name == "sin")
        return SineCosine(x, &sine, nullptr), sine;
    if (name == "cos")
        return SineCosine(x, nullptr, &cosine), cosine;
    if (name == "tan")
        return SineCosine(x, &sine, &cosine), Mul(sine, Each(HlOp::Rcp, cosine));
    if (name == "acos")
        return ArcCosine(x);
    if (name == "asin")
        return Add({All(x, std::numbers::pi_v<float> / 2), Negate(ArcCosine(x))});
    if (name == "atan")
        return ArcTangent(x);
    if (name == "atan2") {
        const HlRefs& right = a[1].refs;
        const HlRefs angle = ArcTangent(Mul(x, Each(HlOp::Rcp, right)));
        const float pi = std::numbers::pi_v<float>;
        const HlRefs zeros = All(x, 0.0f), left = All(x, -pi), up = All(x, pi);
        const HlRefs isBelow = LessThan(x, zeros);
        const HlRefs turn = graph.Select(isBelow, left, up, row);
        return Add(angle, graph.Select(LessThan(right, zeros), turn, zeros, row));
    }
    const float factor = std::numbers::log2e_v<float>;
    if (name == "tanh") {
        const HlRefs power = Add({Each(HlOp::Exp, Scale(x, 2 * factor)), All(x, 1.0f)});
        return Add({All(x, 1.0f), Scale(Each(HlOp::Rcp, power), -2.0f)});
    }
    const HlRefs up = Each(HlOp::Exp, Scale(x, factor)), down = Each(HlOp::Exp, Scale(x, -factor));
    return Scale(Add(up, name == "cosh" ? down : Negate(down)), 0.5f);
}

// ---- Each number alone

HlValue HlIntrinsics::Simple(const HlExpression& expression, Values& a)
{
    static constexpr std::string_view kAngles[] = {"sin",  "cos",   "tan",  "asin", "acos",
                                                   "atan", "atan2", "sinh", "cosh", "tanh"};
    const std::string_view name = expression.name;
    const bool isAngle =
        std::find(std::begin(kAngles), std::end(kAngles), name) != std::end(kAngles);
    const HlType* type = a[0].type;
    return {type, isAngle ? Trigonometry(name, a) : SimpleRefs(name, a)};
}

// Kept whole: a table of one line for each function.
HlRefs HlIntrinsics::SimpleRefs(std::string_view name, Values& a)
{
    const HlRefs& x = a[0].refs;
    const HlRefs none;
    const HlRefs& y = a.size() > 1 ? a[1].refs : none;
    const HlRefs& z = a.size() > 2 ? a[2].refs : none;
    if (name == "abs")
        return run.AbsOf(x, row);
    if (name == "floor")
        return run.Floor(x, row);
    if (name == "ceil")
        return Negate(run.Floor(Negate(x), row));
    if (name == "round")
        return run.Floor(Add(x, All(x, 0.5f)), row);
    if (name == "trunc")
        return run.Truncate(x, row);
    if (name == "frac")
        return run.FractionOf(x, row);
    if (name == "fmod")
        return run.Modulo(x, y, false, row);
    if (name == "min" || name == "max")
        return Apply(name == "min" ? HlOp::Min : HlOp::Max, x, y);
    if (name == "clamp")
        return Apply(HlOp::Min, Apply(HlOp::Max, x, y), z);
    if (name == "saturate")
        return Saturate(x);
    if (name == "lerp")
        return Add(Mul(z, Add(y, Negate(x))), x);
    if (name == "step")
        return AtLeast(y, x);
    if (name == "sign")
        return Add({LessThan(All(x, 0.0f), x), Negate(LessThan(x, All(x, 0.0f)))});
    if (name == "smoothstep") {
        const HlRefs width = Add(y, Negate(x));
        const HlRefs part = Saturate(Mul({Add(z, Negate(x)), Each(HlOp::Rcp, width)}));
        return Mul({Mul(part, part), Add({Scale(part, -2.0f), All(part, 3.0f)})});
    }
    if (name == "degrees" || name == "radians")
        return Scale(x, name == "degrees" ? 57.2957795f : 0.0174532925f);
    if (name == "exp2" || name == "exp")
        return Each(HlOp::Exp, name == "exp2" ? x : Scale(x, std::numbers::log2e_v<float>));
    if (name == "log2")
        return Each(HlOp::Log, x);
    if (name == "log" || name == "log10")
        return Scale(Each(HlOp::Log, x), name == "log" ? 0.693147181f : 0.301029996f);
    if (name == "ldexp")
        return Mul(x, Each(HlOp::Exp, y));
    if (name == "pow")
        return Power(x, y);
    return name == "sqrt" ? SquareRoot(x) : Each(HlOp::Rsq, x);
}

} // namespace headless::hl
