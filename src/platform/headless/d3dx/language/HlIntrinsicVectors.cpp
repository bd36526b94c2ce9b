// Intrinsic functions of vectors and matrices, truths, places, pixels and textures.

#include "platform/headless/d3dx/language/HlIntrinsics.h"

#include <algorithm>
#include <limits>

namespace headless::hl {

HlRef HlIntrinsics::Product(const HlRefs& a, const HlRefs& b)
{
    HlRef sum = graph.Dot({a.begin(), a.begin() + std::min<ptrdiff_t>(4, std::ssize(a))},
                          {b.begin(), b.begin() + std::min<ptrdiff_t>(4, std::ssize(a))});
    for (size_t first = 4; first < a.size(); first += 4) {
        const auto end = static_cast<ptrdiff_t>(std::min(first + 4, a.size()));
        const auto begin = static_cast<ptrdiff_t>(first);
        sum = graph.One(
            HlOp::Add, sum,
            graph.Dot({a.begin() + begin, a.begin() + end}, {b.begin() + begin, b.begin() + end}));
    }
    return sum;
}

HlRefs HlIntrinsics::Normalized(const HlRefs& a)
{
    const bool isKnown =
        std::all_of(a.begin(), a.end(), [&](HlRef ref) { return graph.ValueOf(ref).has_value(); });
    if (a.size() == 3 && graph.Profile().major > 1 && !isKnown) {
        const HlRefs source[] = {a};
        const uint32_t node = graph.Wide(HlOp::Nrm, 3, 0, source);
        return {{node, 0}, {node, 1}, {node, 2}};
    }
    return Mul(a, HlRefs(a.size(), graph.One(HlOp::Rsq, Product(a, a))));
}

HlValue HlIntrinsics::Truths(const HlExpression& expression, Values& a)
{
    const std::string_view name = expression.name;
    const float most = std::numeric_limits<float>::max();
    HlValue result = {run.unit.types.WithBase(*a[0].type, HlBase::Bool), {}};
    if (name == "all" || name == "any") {
        run.ConvertBase(a[0], HlBase::Bool);
        HlRef truth = a[0].refs[0];
        for (size_t i = 1; i < a[0].refs.size(); ++i)
            truth = name == "all" ? graph.And(truth, a[0].refs[i]) : graph.Or(truth, a[0].refs[i]);
        return {run.unit.types.Scalar(HlBase::Bool), {truth}};
    }
    for (const HlRef size : run.AbsOf(a[0].refs, row))
        result.refs.push_back(name == "isnan"   ? graph.Not(graph.AtLeast(size, Number(0.0f)))
                              : name == "isinf" ? graph.Less(Number(most), size)
                                                : graph.AtLeast(Number(most), size));
    return result;
}

HlValue HlIntrinsics::Vectors(const HlExpression& expression, Values& a)
{
    const HlTypes& types = run.unit.types;
    const std::string_view name = expression.name;
    const HlType& scalar = *types.Scalar(HlBase::Float);
    if (name == "dot")
        return {types.Scalar(a[0].type->base), {Product(a[0].refs, a[1].refs)}};
    if (name == "length" || name == "distance") {
        const HlRefs way = name == "length" ? a[0].refs : Add(a[1].refs, Negate(a[0].refs));
        return {&scalar, SquareRoot({Product(way, way)})};
    }
    if (name == "normalize")
        return {a[0].type, Normalized(a[0].refs)};
    if (name == "reflect") {
        const HlRefs twice(a[0].refs.size(),
                           graph.One(HlOp::Mul, {Product(a[0].refs, a[1].refs), Number(-2.0f)}));
        return {a[0].type, Add(Mul(twice, a[1].refs), a[0].refs)};
    }
    if (name == "faceforward") {
        const HlRef facing = Product(a[1].refs, a[2].refs);
        const HlRef isFront = graph.Less(facing, Number(0.0f));
        return {a[0].type, graph.Select({isFront}, a[0].refs, Negate(a[0].refs), row)};
    }
    return MixedVectors(expression, a);
}

/// Those whose arguments differ in shape.
HlValue HlIntrinsics::MixedVectors(const HlExpression& expression, Values& a)
{
    const HlTypes& types = run.unit.types;
    const std::string_view name = expression.name;
    const HlType& scalar = *types.Scalar(HlBase::Float);
    if (name == "cross") {
        if (!IsVector(expression, 0, a[0], 3) || !IsVector(expression, 1, a[1], 3))
            return run.ErrorValue();
        const auto turned = [](const HlRefs& v, size_t by) {
            return HlRefs{v[by % 3], v[(by + 1) % 3], v[(by + 2) % 3]};
        };
        const HlRefs back = Mul(turned(a[0].refs, 2), turned(a[1].refs, 1));
        return {types.Vector(HlBase::Float, 3),
                Add({Mul(turned(a[0].refs, 1), turned(a[1].refs, 2)), Negate(back)})};
    }
    if (name == "D3DCOLORtoUBYTE4") {
        if (!IsVector(expression, 0, a[0], 4))
            return run.ErrorValue();
        const HlRefs& v = a[0].refs;
        return {types.Vector(HlBase::Int, 4),
                run.Floor(Scale({v[2], v[1], v[0], v[3]}, 255.001953f), 4)};
    }
    if (name == "lit") {
        for (size_t i = 0; i < 3; ++i)
            if (!run.Convert(a[i], scalar, expression.parts[i]->begin, false))
                return run.ErrorValue();
        const HlRef diffuse = a[0].refs[0], half = a[1].refs[0], zero = Number(0.0f);
        const HlRef least = graph.One(HlOp::Min, diffuse, half);
        const HlRefs power = Power({half}, {a[2].refs[0]});
        const HlRef specular = graph.Select({graph.Less(least, zero)}, {zero}, power)[0];
        return {types.Vector(HlBase::Float, 4),
                {Number(1.0f), graph.One(HlOp::Max, diffuse, zero), specular, Number(1.0f)}};
    }
    HlValue ratio = a[2]; // refract
    Values both = {a[0], a[1]};
    if (!run.Convert(ratio, scalar, expression.parts[2]->begin, false) ||
        !Alike(expression, both, false))
        return run.ErrorValue();
    row = both[0].type->columns;
    const HlRefs& in = both[0].refs;
    const HlRefs eta(in.size(), ratio.refs[0]);
    const HlRef slope = Product(both[1].refs, in);
    const HlRef rest =
        graph.One(HlOp::Add, {Number(1.0f), graph.One(HlOp::Mul, slope, slope).Negated()});
    const HlRef square = graph.One(HlOp::Mul, graph.One(HlOp::Mul, eta[0], eta[0]), rest);
    const HlRef under = graph.One(HlOp::Add, Number(1.0f), square.Negated());
    const HlRef along =
        graph.One(HlOp::Add, {graph.One(HlOp::Mul, eta[0], slope), SquareRoot({under})[0]});
    const HlRefs bent = Add({Mul(eta, in), Negate(Mul(HlRefs(in.size(), along), both[1].refs))});
    const HlRef isLost = graph.Less(under, Number(0.0f));
    return {both[0].type, graph.Select({isLost}, All(in, 0.0f), bent, row)};
}

// ---- Matrices

HlValue HlIntrinsics::Matrices(const HlExpression& expression, Values& a)
{
    const HlType& type = *a[0].type;
    const HlRefs& m = a[0].refs;
    if (!type.IsMatrix())
        return run.FailValue(expression.parts[0]->begin, FxError::TypeMismatch,
                             "'" + std::string(expression.name) + "' takes a matrix, not " +
                                 HlTypes::Name(type));
    const unsigned columns = type.columns;
    if (expression.name == "transpose") {
        HlRefs turned;
        for (unsigned i = 0; i < columns; ++i)
            for (unsigned j = 0; j < type.rows; ++j)
                turned.push_back(m[j * columns + i]);
        return {run.unit.types.Matrix(type.base, columns, type.rows), turned};
    }
    if (type.rows != columns)
        return run.FailValue(expression.parts[0]->begin, FxError::TypeMismatch,
                             "only a square matrix has a determinant");
    // By the first row: minors of 2 by 2 and 3 by 3, each from the rows below.
    const auto at = [&](unsigned r, unsigned c) { return m[r * columns + c]; };
    const auto mul = [&](HlRef x, HlRef y) { return graph.One(HlOp::Mul, x, y); };
    const auto two = [&](unsigned r, unsigned c, unsigned d) {
        return graph.One(HlOp::Add,
                         {mul(at(r, c), at(r + 1, d)), mul(at(r, d), at(r + 1, c)).Negated()});
    };
    const auto three = [&](unsigned r, unsigned c, unsigned d, unsigned e) {
        const HlRef first = graph.One(HlOp::Add, {mul(at(r, c), two(r + 1, d, e)),
                                                  mul(at(r, d), two(r + 1, c, e)).Negated()});
        return graph.One(HlOp::Add, first, mul(at(r, e), two(r + 1, c, d)));
    };
    const HlType* const scalar = run.unit.types.Scalar(HlBase::Float);
    if (columns == 1)
        return {scalar, {m[0]}};
    if (columns == 2)
        return {scalar, {two(0, 0, 1)}};
    if (columns == 3)
        return {scalar, {three(0, 0, 1, 2)}};
    const HlRef first = graph.One(
        HlOp::Add, {mul(at(0, 0), three(1, 1, 2, 3)), mul(at(0, 1), three(1, 0, 2, 3)).Negated()});
    const HlRef second = graph.One(
        HlOp::Add, {mul(at(0, 2), three(1, 0, 1, 3)), mul(at(0, 3), three(1, 0, 1, 2)).Negated()});
    return {scalar, {graph.One(HlOp::Add, first, second)}};
}

/// Products of rows with columns. Columns that are registers take one instruction for a number; else the
/// rows of `b` are summed.
HlRefs HlIntrinsics::MultiplyRows(const HlRefs& a, unsigned rows, unsigned inner, const HlRefs& b,
                                  unsigned columns)
{
    const auto registerOf = [&](HlRef ref) {
        return std::make_pair(graph.Of(ref).op, graph.Of(ref).op == HlOp::Literal ? 0 : ref.Node());
    };
    const auto isRegister = [&](const HlRefs& refs, size_t first, size_t step) {
        for (size_t i = 1; i < inner; ++i)
            if (registerOf(refs[first + i * step]) != registerOf(refs[first]))
                return false;
        return true;
    };
    HlRefs result(rows * columns);
    for (unsigned r = 0; r < rows; ++r) {
        const HlRefs left = {a.begin() + r * inner, a.begin() + (r + 1) * inner};
        const bool byColumns =
            columns == 1 || inner == 1 || (isRegister(b, 0, columns) && inner > 1);
        for (unsigned c = 0; byColumns && c < columns; ++c) {
            HlRefs right;
            for (unsigned i = 0; i < inner; ++i)
                right.push_back(b[i * columns + c]);
            result[r * columns + c] = graph.Dot(left, right);
        }
        if (byColumns)
            continue;
        HlRefs sum(columns, Number(0.0f));
        for (unsigned i = 0; i < inner; ++i)
            sum = graph.Lanes(HlOp::Add,
                              graph.Lanes(HlOp::Mul, HlRefs(columns, left[i]),
                                          {b.begin() + i * columns, b.begin() + (i + 1) * columns},
                                          {}),
                              sum, {});
        std::copy(sum.begin(), sum.end(), result.begin() + r * columns);
    }
    return result;
}

/// A vector is a row on the left and a column on the right.
HlValue HlIntrinsics::Multiply(const HlExpression& expression, Values& a)
{
    const HlTypes& types = run.unit.types;
    for (HlValue& value : a)
        run.ConvertBase(value, HlBase::Float);
    const HlType& x = *a[0].type;
    const HlType& y = *a[1].type;
    if (x.cells == 1 || y.cells == 1) {
        Values both = a;
        if (!Alike(expression, both, false))
            return run.ErrorValue();
        return {both[0].type,
                graph.Lanes(HlOp::Mul, both[0].refs, both[1].refs, {}, both[0].type->columns)};
    }
    if (x.IsVector() && y.IsVector()) {
        if (!Alike(expression, a, false))
            return run.ErrorValue();
        return {types.Scalar(HlBase::Float), {Product(a[0].refs, a[1].refs)}};
    }
    const unsigned rows = x.IsMatrix() ? x.rows : 1;
    const unsigned inner = std::min<unsigned>(x.columns, y.IsMatrix() ? y.rows : y.columns);
    const unsigned columns = y.IsMatrix() ? y.columns : 1;
    const unsigned right = y.IsMatrix() ? y.rows : y.columns;
    if (x.columns != right)
        run.Warn(expression.place, HlTypes::Name(x.columns > right ? x : y) +
                                       " is cut for the product with " +
                                       HlTypes::Name(x.columns > right ? y : x));
    HlRefs left;
    for (unsigned r = 0; r < rows; ++r)
        left.insert(left.end(), a[0].refs.begin() + r * x.columns,
                    a[0].refs.begin() + r * x.columns + inner);
    HlRefs result;
    if (y.IsMatrix() || inner == 1) {
        result = MultiplyRows(left, rows, inner, a[1].refs, columns);
    } else { // a matrix times a vector is the vector times the turned matrix
        HlRefs turned;
        for (unsigned i = 0; i < inner; ++i)
            for (unsigned r = 0; r < rows; ++r)
                turned.push_back(left[r * inner + i]);
        const HlRefs vector = {a[1].refs.begin(), a[1].refs.begin() + inner};
        result = MultiplyRows(vector, 1, inner, turned, rows);
    }
    if (x.IsMatrix() && y.IsMatrix())
        return {types.Matrix(HlBase::Float, rows, columns), result};
    return {types.Vector(HlBase::Float, static_cast<unsigned>(result.size())), result};
}

// ---- Places, pixels

bool HlIntrinsics::StoreTo(const HlExpression& expression, size_t i, HlValue value)
{
    const HlPlace place = run.FindPlace(*expression.parts[i]);
    if (!place.type || !run.Convert(value, *place.type, expression.parts[i]->begin, false))
        return false;
    run.Store(place, value.refs);
    return true;
}

/// sincos, modf, frexp: their last arguments are written.
HlValue HlIntrinsics::Outputs(const HlExpression& expression, Values& a)
{
    run.ConvertBase(a[0], HlBase::Float);
    const HlRefs& x = a[0].refs;
    const HlType* const type = a[0].type;
    if (expression.name == "sincos") {
        HlRefs sine, cosine;
        SineCosine(x, &sine, &cosine);
        const bool isStored =
            StoreTo(expression, 1, {type, sine}) && StoreTo(expression, 2, {type, cosine});
        return isStored ? HlValue{run.unit.types.Void(), {}} : run.ErrorValue();
    }
    if (expression.name == "modf") {
        const HlRefs whole = run.Truncate(x, row);
        return StoreTo(expression, 1, {type, whole}) ? HlValue{type, Add(x, Negate(whole))}
                                                     : run.ErrorValue();
    }
    HlRefs isZero;
    for (const HlRef ref : x)
        isZero.push_back(graph.Same(ref, Number(0.0f)));
    const HlRefs power = Add({run.Floor(Each(HlOp::Log, x), row), All(x, 1.0f)});
    const HlRefs exponent = graph.Select(isZero, All(x, 0.0f), power, row);
    return StoreTo(expression, 1, {type, exponent})
               ? HlValue{type, Mul(x, Each(HlOp::Exp, Negate(exponent)))}
               : run.ErrorValue();
}

HlValue HlIntrinsics::Pixels(const HlExpression& expression, Values& a)
{
    const HlRefs& x = a[0].refs;
    if (expression.name == "clip") {
        const HlRef path = run.PathTruth();
        if (!graph.Profile().isPixel || graph.IsValue(path, 0.0f))
            return {run.unit.types.Void(), {}};
        const HlRefs tested =
            graph.IsValue(path, 1.0f) ? x : graph.Select({path}, x, All(x, 0.0f), row);
        for (size_t first = 0; first < tested.size(); first += 4)
            graph.Effect(
                HlOp::Kill, 0,
                {tested.begin() + static_cast<ptrdiff_t>(first),
                 tested.begin() + static_cast<ptrdiff_t>(std::min(first + 4, tested.size()))});
        return {run.unit.types.Void(), {}};
    }
    if (!graph.Profile().hasGradients)
        return run.FailValue(expression.place, FxError::UnknownName,
                             std::string(graph.Profile().name) + " has no '" +
                                 std::string(expression.name) + "'");
    if (expression.name != "fwidth")
        return {a[0].type, Apply(expression.name == "ddx" ? HlOp::Dsx : HlOp::Dsy, x)};
    return {a[0].type,
            Add({run.AbsOf(Apply(HlOp::Dsx, x), row), run.AbsOf(Apply(HlOp::Dsy, x), row)})};
}

HlValue HlIntrinsics::Refused(const HlExpression& expression, Values&)
{
    return run.FailValue(expression.place, FxError::UnknownName,
                         "shaders have no '" + std::string(expression.name) + "'");
}

// ---- Textures

HlValue HlIntrinsics::Texture(const HlExpression& expression, Values& a)
{
    static constexpr struct {
        std::string_view name;
        shader::SamplerKind kind;
        unsigned coordinates;
    } kKinds[] = {{"tex1D", shader::SamplerKind::OneD, 1},
                  {"tex2D", shader::SamplerKind::TwoD, 2},
                  {"tex3D", shader::SamplerKind::Volume, 3},
                  {"texCUBE", shader::SamplerKind::Cube, 3}};
    static constexpr std::string_view kEndings[] = {"", "proj", "bias", "lod", "grad"};
    const HlProfile& profile = graph.Profile();
    const auto kind = std::find_if(std::begin(kKinds), std::end(kKinds), [&](const auto& one) {
        return expression.name.starts_with(one.name);
    });
    const std::string_view ending = expression.name.substr(kind->name.size());
    auto sampling = static_cast<HlSampling>(
        std::find(std::begin(kEndings), std::end(kEndings), ending) - std::begin(kEndings));
    if (a.size() == 3)
        return run.FailValue(expression.place, FxError::TypeMismatch,
                             "'" + std::string(expression.name) +
                                 "' takes 2 or 4 arguments, not 3");
    if (a.size() == 4)
        sampling = HlSampling::Gradients;
    const bool isFour = sampling != HlSampling::Plain && sampling != HlSampling::Gradients;
    const bool hasIt = !profile.isPixel ? profile.major == 3 && sampling == HlSampling::Level
                       : sampling == HlSampling::Level     ? profile.major == 3
                       : sampling == HlSampling::Gradients ? profile.hasGradients
                                                           : true;
    if (!hasIt)
        return run.FailValue(expression.place, FxError::UnknownName,
                             std::string(profile.name) + " has no '" +
                                 std::string(expression.name) + "'");
    const HlNode& sampler = graph.Of(a[0].refs[0]);
    if (sampler.op != HlOp::Sampler)
        return run.FailValue(expression.place, FxError::BadIndex,
                             "the index of a sampler must be known");
    if (!run.constants.UseSampler(sampler.extra, kind->kind))
        return run.FailValue(expression.place, FxError::TypeMismatch,
                             "the sampler is used for textures of two kinds");
    const uint32_t extra = sampler.extra << 4 | static_cast<uint32_t>(sampling);
    std::vector<HlRefs> sources;
    for (size_t i = 1; i < a.size(); ++i) {
        const unsigned count = isFour ? 4 : kind->coordinates;
        HlValue value = a[i];
        const HlType& wanted = count == 1 ? *run.unit.types.Scalar(HlBase::Float)
                                          : *run.unit.types.Vector(HlBase::Float, count);
        if (!run.Convert(value, wanted, expression.parts[i]->begin, false))
            return run.ErrorValue();
        sources.push_back(value.refs);
    }
    const uint32_t node = graph.Wide(HlOp::Sample, 4, extra, sources);
    return {run.unit.types.Vector(HlBase::Float, 4), {{node, 0}, {node, 1}, {node, 2}, {node, 3}}};
}

} // namespace headless::hl
