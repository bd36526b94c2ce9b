#pragma once

#include "platform/headless/shader/ArithmeticFormulas.h"
#include "platform/headless/shader/Kernels.h"

namespace headless::shader {

// The loops of arithmetic instructions over all pixels of a run, for one form of lanes. A part is what one
// operation of the form takes: one group of four, or two.

template <typename F>
constexpr int kGroupsOfPart = F::kCount / 4;

template <typename F>
int PartsOf(const Machine& machine)
{
    return (machine.groups + kGroupsOfPart<F> - 1) / kGroupsOfPart<F>;
}

template <typename F>
float* FloatsAt(const Machine& machine, uint32_t place)
{
    return reinterpret_cast<float*>(machine.file + place);
}

/// A component of a source for each part. `IsPlain`: without modifiers.
template <typename F, bool IsPlain>
class SourceParts {
public:
    using Floats = typename F::Floats;

    SourceParts(const Machine& machine, const Operand& source, int i)
        : values(FloatsAt<F>(machine, source.place[i])),
          step(static_cast<int>(source.step) * F::kCount),
          keep(AsFloats(F::SplatInt(source.isAbsolute ? 0x7FFFFFFF : -1))),
          flip(F::Splat(source.isNegated ? -0.0f : 0.0f))
    {}

    Floats operator[](int part) const
    {
        const Floats value = F::Load(values + part * step);
        return IsPlain ? value : (value & keep) ^ flip;
    }

private:
    const float* values;
    int step; ///< 0 for a constant
    Floats keep, flip;
};

/// Where the results of an operation go: to their registers at once, or aside if they still have to be
/// modified or chosen. Then `Finish` brings them to their registers.
template <typename F>
class ResultParts {
public:
    using Floats = typename F::Floats;

    ResultParts(const Operation& resultsOf, Machine& onMachine, bool isAside)
        : operation(resultsOf),
          machine(onMachine),
          isDirect(!isAside && operation.isFinished && !machine.isMasked)
    {}

    float* At(int i) { return isDirect ? FloatsAt<F>(machine, operation.out[i]) : aside[i]; }
    void Put(int i, int part, Floats value) { F::Store(At(i) + part * F::kCount, value); }

    /// Gives all components what the first one got.
    void SpreadFirst()
    {
        const int parts = PartsOf<F>(machine);
        const float* from = At(0);
        for (int i = 1; i < operation.count; ++i) {
            float* to = At(i);
            for (int part = 0; part < parts; ++part)
                F::Store(to + part * F::kCount, F::Load(from + part * F::kCount));
        }
    }

    void Finish()
    {
        for (int i = 0; !isDirect && i < operation.count; ++i)
            FinishComponent(i);
    }

private:
    /// Result modifiers, predicates and masks.
    void FinishComponent(int i)
    {
        const Floats scale = F::Splat(operation.scale);
        float* target = FloatsAt<F>(machine, operation.out[i]);
        const bool isChosen = machine.isMasked || operation.isPredicated;
        const int parts = PartsOf<F>(machine);
        for (int part = 0; part < parts; ++part, target += F::kCount) {
            Floats value = F::Load(aside[i] + part * F::kCount) * scale;
            if (operation.saturates)
                value = Saturate(value);
            F::Store(target, isChosen ? Select(Chosen(i, part), value, F::Load(target)) : value);
        }
    }

    Floats Chosen(int i, int part) const
    {
        Floats chosen = AsFloats(F::SplatInt(-1));
        if (machine.isMasked)
            chosen = F::Load(reinterpret_cast<const float*>(machine.active) + part * F::kCount);
        if (!operation.isPredicated)
            return chosen;
        const Floats mask =
            F::Load(FloatsAt<F>(machine, operation.predicate[i]) + part * F::kCount);
        return operation.isPredicateInverted ? AndNot(mask, chosen) : mask & chosen;
    }

    const Operation& operation;
    Machine& machine;
    const bool isDirect;
    alignas(32) float aside[4][kMaxGroups * 4];
};

/// Computes each written component from the same component of the sources.
template <typename F, bool IsPlain, int Sources,
          typename F::Floats (*Compute)(typename F::Floats, typename F::Floats, typename F::Floats)>
void Each(const Operation& operation, Machine& machine)
{
    using Parts = SourceParts<F, IsPlain>;
    const int parts = PartsOf<F>(machine);
    ResultParts<F> results(operation, machine, operation.readsItsResult);
    for (int i = 0; i < operation.count; ++i) {
        const Parts a(machine, operation.sources[0], i);
        const Parts b(machine, operation.sources[Sources > 1 ? 1 : 0], i);
        const Parts c(machine, operation.sources[Sources > 2 ? 2 : 0], i);
        float* out = results.At(i);
        for (int part = 0; part < parts; ++part)
            F::Store(out + part * F::kCount, Compute(a[part], Sources > 1 ? b[part] : a[part],
                                                     Sources > 2 ? c[part] : a[part]));
    }
    results.Finish();
}

/// Computes one number and writes it to all components.
template <typename F, bool IsPlain, int Sources,
          typename F::Floats (*Compute)(typename F::Floats, typename F::Floats)>
void Single(const Operation& operation, Machine& machine)
{
    const SourceParts<F, IsPlain> a(machine, operation.sources[0], 0);
    const SourceParts<F, IsPlain> b(machine, operation.sources[Sources > 1 ? 1 : 0], 0);
    const int parts = PartsOf<F>(machine);
    ResultParts<F> results(operation, machine, false);
    for (int part = 0; part < parts; ++part)
        results.Put(0, part, Compute(a[part], b[part]));
    results.SpreadFirst();
    results.Finish();
}

/// The products of `Count` components, added in their order, and then x of the third source.
template <typename F, bool IsPlain, int Count, bool Adds>
void Dot(const Operation& operation, Machine& machine)
{
    using Parts = SourceParts<F, IsPlain>;
    const Operand &first = operation.sources[0], &second = operation.sources[1];
    const Parts a[4] = {Parts(machine, first, 0), Parts(machine, first, 1),
                        Parts(machine, first, 2), Parts(machine, first, 3)};
    const Parts b[4] = {Parts(machine, second, 0), Parts(machine, second, 1),
                        Parts(machine, second, 2), Parts(machine, second, 3)};
    const Parts added(machine, operation.sources[2], 0);
    const int parts = PartsOf<F>(machine);
    ResultParts<F> results(operation, machine, false);
    for (int part = 0; part < parts; ++part) {
        typename F::Floats sum = a[0][part] * b[0][part];
        for (int i = 1; i < Count; ++i)
            sum = sum + a[i][part] * b[i][part];
        results.Put(0, part, Adds ? sum + added[part] : sum);
    }
    results.SpreadFirst();
    results.Finish();
}

/// Four values, of which the written ones are kept.
template <typename F,
          void (*Compute)(const typename F::Floats (&a)[4], const typename F::Floats (&b)[4],
                          typename F::Floats (&out)[4])>
void Whole(const Operation& operation, Machine& machine)
{
    const int parts = PartsOf<F>(machine);
    ResultParts<F> results(operation, machine, false);
    for (int part = 0; part < parts; ++part) {
        typename F::Floats a[4], b[4], all[4];
        for (int i = 0; i < 4; ++i) {
            a[i] = SourceParts<F, false>(machine, operation.sources[0], i)[part];
            b[i] = SourceParts<F, false>(machine, operation.sources[1], i)[part];
        }
        Compute(a, b, all);
        for (int i = 0; i < operation.count; ++i)
            results.Put(i, part, all[operation.component[i]]);
    }
    results.Finish();
}

/// Differences within each quad, the same for its two rows or columns.
template <typename F, bool IsAlongX>
void Derivative(const Operation& operation, Machine& machine)
{
    const int parts = PartsOf<F>(machine);
    ResultParts<F> results(operation, machine, true); // both rows are read for either
    for (int i = 0; i < operation.count; ++i) {
        const SourceParts<F, false> source(machine, operation.sources[0], i);
        for (int part = 0; part < parts; ++part) {
            const typename F::Floats value = source[part];
            if constexpr (IsAlongX)
                results.Put(i, part, OddLanes(value) - EvenLanes(value));
            else if constexpr (F::kRows == 2)
                results.Put(i, part, HalvesDifference(value));
            else
                results.Put(i, part, source[part | 1] - source[part & ~1]);
        }
    }
    results.Finish();
}

/// The kernels of the instructions that have a row in the table of all instructions.
template <typename F>
struct KernelRow {
    Opcode opcode;
    Kernel kernel;
};

#define QSA_EACH(sources, compute)                                                                 \
    {                                                                                              \
        Each<F, true, sources, Arithmetic<F>::compute>,                                            \
            Each<F, false, sources, Arithmetic<F>::compute>, Shape::Each                           \
    }
#define QSA_SINGLE(sources, compute)                                                               \
    {                                                                                              \
        Single<F, true, sources, Arithmetic<F>::compute>,                                          \
            Single<F, false, sources, Arithmetic<F>::compute>, Shape::Scalar                       \
    }
#define QSA_DOT(count, adds)                                                                       \
    {                                                                                              \
        Dot<F, true, count, adds>, Dot<F, false, count, adds>, Shape::Vector                       \
    }
#define QSA_WHOLE(compute)                                                                         \
    {                                                                                              \
        Whole<F, Arithmetic<F>::compute>, Whole<F, Arithmetic<F>::compute>, Shape::Vector          \
    }

template <typename F>
constexpr KernelRow<F> kKernelRows[] = {
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

} // namespace headless::shader
