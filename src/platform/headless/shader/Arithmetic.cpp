// The arithmetic of shaders.

#include "platform/headless/shader/Kernels.h"
#include "platform/headless/shader/ShaderMath.h"

#include <iterator>

namespace headless::shader {

namespace {

template <bool IsPlain>
inline Lanes Get(const Machine& machine, const Operand& source, int i, int group)
{
    return IsPlain ? Plain(machine, source, i, group) : Load(machine, source, i, group);
}

/// Computes each written component from the same component of the sources.
template <bool IsPlain, int Sources, Lanes (*Compute)(Lanes, Lanes, Lanes)>
void Each(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        Lanes results[4];
        for (int i = 0; i < operation.count; ++i) {
            const Lanes a = Get<IsPlain>(machine, operation.sources[0], i, g);
            const Lanes b = Sources > 1 ? Get<IsPlain>(machine, operation.sources[1], i, g) : a;
            const Lanes c = Sources > 2 ? Get<IsPlain>(machine, operation.sources[2], i, g) : a;
            results[i] = Compute(a, b, c);
        }
        Finish(operation, machine, g, results);
    }
}

/// Computes one number and writes it to all components.
template <bool IsPlain, int Sources, Lanes (*Compute)(Lanes, Lanes)>
void Single(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        const Lanes a = Get<IsPlain>(machine, operation.sources[0], 0, g);
        const Lanes b = Sources > 1 ? Get<IsPlain>(machine, operation.sources[1], 0, g) : a;
        const Lanes value = Compute(a, b);
        const Lanes results[4] = {value, value, value, value};
        Finish(operation, machine, g, results);
    }
}

/// The products of `Count` components, added in their order, and then z of the third source's x.
template <bool IsPlain, int Count, bool Adds>
void Dot(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        Lanes sum = Get<IsPlain>(machine, operation.sources[0], 0, g) *
                    Get<IsPlain>(machine, operation.sources[1], 0, g);
        for (int i = 1; i < Count; ++i)
            sum = sum + Get<IsPlain>(machine, operation.sources[0], i, g) *
                            Get<IsPlain>(machine, operation.sources[1], i, g);
        if (Adds)
            sum = sum + Get<IsPlain>(machine, operation.sources[2], 0, g);
        const Lanes results[4] = {sum, sum, sum, sum};
        Finish(operation, machine, g, results);
    }
}

/// Four values, of which the written ones are kept.
template <void (*Compute)(const Lanes (&a)[4], const Lanes (&b)[4], Lanes (&out)[4])>
void Whole(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        Lanes a[4], b[4], all[4];
        for (int i = 0; i < 4; ++i) {
            a[i] = Load(machine, operation.sources[0], i, g);
            b[i] = Load(machine, operation.sources[1], i, g);
        }
        Compute(a, b, all);
        Lanes results[4];
        for (int i = 0; i < operation.count; ++i)
            results[i] = all[operation.component[i]];
        Finish(operation, machine, g, results);
    }
}

Lanes One()
{
    return Splat(1.0f);
}
Lanes Zero()
{
    return Splat(0.0f);
}

Lanes Move(Lanes a, Lanes, Lanes)
{
    return a;
}
Lanes Add(Lanes a, Lanes b, Lanes)
{
    return a + b;
}
Lanes Sub(Lanes a, Lanes b, Lanes)
{
    return a - b;
}
Lanes Mul(Lanes a, Lanes b, Lanes)
{
    return a * b;
}
Lanes Mad(Lanes a, Lanes b, Lanes c)
{
    return a * b + c;
}
Lanes Lesser(Lanes a, Lanes b, Lanes)
{
    return Min(a, b);
}
Lanes Greater(Lanes a, Lanes b, Lanes)
{
    return Max(a, b);
}
Lanes LessThan(Lanes a, Lanes b, Lanes)
{
    return IsLess(a, b) & One();
}
Lanes AtLeast(Lanes a, Lanes b, Lanes)
{
    return IsAtLeast(a, b) & One();
}
Lanes Lerp(Lanes share, Lanes a, Lanes b)
{
    return share * (a - b) + b;
}
Lanes Fraction(Lanes a, Lanes, Lanes)
{
    return a - Floor(a);
}
Lanes Magnitude(Lanes a, Lanes, Lanes)
{
    return Absolute(a);
}
Lanes Sign(Lanes a, Lanes, Lanes)
{
    return (IsGreater(a, Zero()) & One()) - (IsLess(a, Zero()) & One());
}
Lanes ChooseByHalf(Lanes a, Lanes b, Lanes c)
{
    return Select(IsGreater(a, Splat(0.5f)), b, c);
}
Lanes ChooseBySign(Lanes a, Lanes b, Lanes c)
{
    return Select(IsAtLeast(a, Zero()), b, c);
}

Lanes Rcp(Lanes a, Lanes)
{
    return Reciprocal(a);
}
Lanes Rsq(Lanes a, Lanes)
{
    return ReciprocalRoot(a);
}
Lanes Exp(Lanes a, Lanes)
{
    return Exp2(a);
}
Lanes Log(Lanes a, Lanes)
{
    return Log2(a);
}
Lanes Pow(Lanes a, Lanes b)
{
    const Lanes power = Exp2(Log2(a) * b);
    return Select(IsSame(b, Zero()), One(), power); // 0 to the power 0 is 1
}

void Cross(const Lanes (&a)[4], const Lanes (&b)[4], Lanes (&out)[4])
{
    out[0] = a[1] * b[2] - a[2] * b[1];
    out[1] = a[2] * b[0] - a[0] * b[2];
    out[2] = a[0] * b[1] - a[1] * b[0];
    out[3] = Zero();
}

/// The length is that of x, y and z; a vector of length 0 becomes 0.
void Normalise(const Lanes (&a)[4], const Lanes (&)[4], Lanes (&out)[4])
{
    const Lanes square = a[0] * a[0] + a[1] * a[1] + a[2] * a[2];
    const Lanes scale = Select(IsGreater(square, Zero()), ReciprocalRoot(square), Zero());
    for (int i = 0; i < 4; ++i)
        out[i] = a[i] * scale;
}

/// Light factors from x = n.l, y = n.h and the exponent w, which is held within -127.9961..127.9961.
void Light(const Lanes (&a)[4], const Lanes (&)[4], Lanes (&out)[4])
{
    const Lanes limit = Splat(127.9961f);
    const Lanes isLit = IsGreater(a[0], Zero());
    const Lanes shines = isLit & IsGreater(a[1], Zero());
    out[0] = out[3] = One();
    out[1] = Max(a[0], Zero());
    out[2] = shines & Pow(a[1], ClampLanes(a[3], Zero() - limit, limit));
}

void Distance(const Lanes (&a)[4], const Lanes (&b)[4], Lanes (&out)[4])
{
    out[0] = One();
    out[1] = a[1] * b[1];
    out[2] = a[2];
    out[3] = b[3];
}

/// The cosine is in x, the sine in y.
void CosSin(const Lanes (&a)[4], const Lanes (&)[4], Lanes (&out)[4])
{
    SinCos(a[0], out[1], out[0]);
    out[2] = out[3] = Zero();
}

void OldExp(const Lanes (&a)[4], const Lanes (&)[4], Lanes (&out)[4])
{
    const Lanes whole = Floor(a[0]);
    out[0] = Exp2(whole);
    out[1] = a[0] - whole;
    out[2] = Exp2(a[0]);
    out[3] = One();
}

/// Exponent and mantissa of |x|: x = y * 2^exponent with y in 1..2.
void OldLog(const Lanes (&a)[4], const Lanes (&)[4], Lanes (&out)[4])
{
    const IntLanes bits = AsInts(Absolute(a[0]));
    const Lanes exponent = ToFloats(ShiftRight(bits, 23) - SplatInt(127));
    const Lanes mantissa = AsFloats((bits & SplatInt(0x7FFFFF)) | SplatInt(0x3F800000));
    const Lanes whole = Log2(a[0]);
    const Lanes isZero = IsLess(Absolute(a[0]), Splat(1.17549435e-38f));
    out[0] = Select(isZero, whole, exponent);
    out[1] = Select(isZero, One(), mantissa);
    out[2] = whole;
    out[3] = One();
}

Lanes RoundNearest(Lanes a, Lanes, Lanes)
{
    const Lanes held = ClampLanes(a, Splat(-16384.0f), Splat(16384.0f));
    return ToFloats(Round(held));
}
Lanes RoundDown(Lanes a, Lanes, Lanes)
{
    return Floor(ClampLanes(a, Splat(-16384.0f), Splat(16384.0f)));
}

struct Row {
    Opcode opcode;
    Kernel kernel;
};

#define QSA_EACH(sources, compute)                                                                 \
    {                                                                                              \
        Each<true, sources, compute>, Each<false, sources, compute>, Shape::Each                   \
    }
#define QSA_SINGLE(sources, compute)                                                               \
    {                                                                                              \
        Single<true, sources, compute>, Single<false, sources, compute>, Shape::Scalar             \
    }
#define QSA_DOT(count, adds)                                                                       \
    {                                                                                              \
        Dot<true, count, adds>, Dot<false, count, adds>, Shape::Vector                             \
    }
#define QSA_WHOLE(compute)                                                                         \
    {                                                                                              \
        Whole<compute>, Whole<compute>, Shape::Vector                                              \
    }

constexpr Row kKernels[] = {
    {Opcode::Mov, QSA_EACH(1, Move)},         {Opcode::Add, QSA_EACH(2, Add)},
    {Opcode::Sub, QSA_EACH(2, Sub)},          {Opcode::Mul, QSA_EACH(2, Mul)},
    {Opcode::Mad, QSA_EACH(3, Mad)},          {Opcode::Min, QSA_EACH(2, Lesser)},
    {Opcode::Max, QSA_EACH(2, Greater)},      {Opcode::Slt, QSA_EACH(2, LessThan)},
    {Opcode::Sge, QSA_EACH(2, AtLeast)},      {Opcode::Lrp, QSA_EACH(3, Lerp)},
    {Opcode::Frc, QSA_EACH(1, Fraction)},     {Opcode::Abs, QSA_EACH(1, Magnitude)},
    {Opcode::Sgn, QSA_EACH(1, Sign)},         {Opcode::Cnd, QSA_EACH(3, ChooseByHalf)},
    {Opcode::Cmp, QSA_EACH(3, ChooseBySign)}, {Opcode::Rcp, QSA_SINGLE(1, Rcp)},
    {Opcode::Rsq, QSA_SINGLE(1, Rsq)},        {Opcode::Exp, QSA_SINGLE(1, Exp)},
    {Opcode::ExpP, QSA_SINGLE(1, Exp)},       {Opcode::Log, QSA_SINGLE(1, Log)},
    {Opcode::LogP, QSA_SINGLE(1, Log)},       {Opcode::Pow, QSA_SINGLE(2, Pow)},
    {Opcode::Dp3, QSA_DOT(3, false)},         {Opcode::Dp4, QSA_DOT(4, false)},
    {Opcode::Dp2Add, QSA_DOT(2, true)},       {Opcode::Crs, QSA_WHOLE(Cross)},
    {Opcode::Nrm, QSA_WHOLE(Normalise)},      {Opcode::Lit, QSA_WHOLE(Light)},
    {Opcode::Dst, QSA_WHOLE(Distance)},       {Opcode::SinCos, QSA_WHOLE(CosSin)},
};

#undef QSA_EACH
#undef QSA_SINGLE
#undef QSA_DOT
#undef QSA_WHOLE

/// Differences within each quad, the same for its two rows or columns.
template <bool IsAlongX>
void Derivative(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; g += 2) {
        Lanes results[2][4];
        for (int i = 0; i < operation.count; ++i) {
            const Lanes upper = Load(machine, operation.sources[0], i, g);
            const Lanes lower = Load(machine, operation.sources[0], i, g + 1);
            results[0][i] = IsAlongX ? OddLanes(upper) - EvenLanes(upper) : lower - upper;
            results[1][i] = IsAlongX ? OddLanes(lower) - EvenLanes(lower) : lower - upper;
        }
        Finish(operation, machine, g, results[0]);
        Finish(operation, machine, g + 1, results[1]);
    }
}

Lanes Modified(SourceModifier modifier, Lanes value)
{
    const Lanes half = Splat(0.5f), two = Splat(2.0f);
    switch (modifier) {
    case SourceModifier::Bias:
        return value - half;
    case SourceModifier::BiasNeg:
        return half - value;
    case SourceModifier::Sign:
        return (value - half) * two;
    case SourceModifier::SignNeg:
        return (half - value) * two;
    case SourceModifier::Comp:
        return One() - value;
    case SourceModifier::X2:
        return value * two;
    case SourceModifier::X2Neg:
        return Zero() - value * two;
    default:
        return value;
    }
}

} // namespace

const Kernel* FindKernel(Opcode opcode)
{
    for (const Row& row : kKernels)
        if (row.opcode == opcode)
            return &row.kernel;
    return nullptr;
}

void RunMove(const Operation& operation, Machine& machine)
{
    Each<false, 1, Move>(operation, machine);
}

void RunRoundNearest(const Operation& operation, Machine& machine)
{
    Each<false, 1, RoundNearest>(operation, machine);
}

void RunRoundDown(const Operation& operation, Machine& machine)
{
    Each<false, 1, RoundDown>(operation, machine);
}

void RunOldExp(const Operation& operation, Machine& machine)
{
    Whole<OldExp>(operation, machine);
}

void RunOldLog(const Operation& operation, Machine& machine)
{
    Whole<OldLog>(operation, machine);
}

void RunDerivativeX(const Operation& operation, Machine& machine)
{
    Derivative<true>(operation, machine);
}

void RunDerivativeY(const Operation& operation, Machine& machine)
{
    Derivative<false>(operation, machine);
}

/// The sources are whole registers. _dz and _dw divide x and y by the third or fourth component.
void RunModifier(const Operation& operation, Machine& machine)
{
    const auto modifier = static_cast<SourceModifier>(operation.control);
    const bool divides = modifier == SourceModifier::Dz || modifier == SourceModifier::Dw;
    for (int g = 0; g < machine.groups; ++g) {
        Lanes results[4];
        const Lanes divisor =
            Plain(machine, operation.sources[0], modifier == SourceModifier::Dz ? 2 : 3, g);
        for (int i = 0; i < 4; ++i) {
            const Lanes value = Plain(machine, operation.sources[0], i, g);
            results[i] = divides ? (i < 2 ? value / divisor : value) : Modified(modifier, value);
        }
        Finish(operation, machine, g, results);
    }
}

void RunBump(const Operation& operation, Machine& machine)
{
    const auto& matrix = machine.stages[operation.sampler].bumpMatrix;
    for (int g = 0; g < machine.groups; ++g) {
        const Lanes x = Load(machine, operation.sources[1], 0, g);
        const Lanes y = Load(machine, operation.sources[1], 1, g);
        Lanes all[4] = {Load(machine, operation.sources[0], 0, g) + x * Splat(matrix[0][0]) +
                            y * Splat(matrix[1][0]),
                        Load(machine, operation.sources[0], 1, g) + x * Splat(matrix[0][1]) +
                            y * Splat(matrix[1][1]),
                        Zero(), Zero()};
        Lanes results[4];
        for (int i = 0; i < operation.count; ++i)
            results[i] = all[operation.component[i]];
        Finish(operation, machine, g, results);
    }
}

} // namespace headless::shader
