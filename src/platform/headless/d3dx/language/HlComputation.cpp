// Calls of a text's functions for values that no shader computes.

#include "platform/headless/d3dx/language/HlComputation.h"

#include "platform/headless/d3dx/language/HlCompiler.h"

namespace headless::hl {

namespace {

std::vector<bool> FindRead(const HlGraph& graph, const HlRefs& results)
{
    std::vector<bool> isRead(graph.Nodes().size());
    for (const HlRef ref : results)
        isRead[ref.Node()] = true;
    for (size_t i = isRead.size(); i-- > 0;) {
        const HlNode& node = graph.Nodes()[i];
        for (unsigned s = 0; isRead[i] && s < node.sources; ++s)
            for (unsigned lane = 0; lane < node.width; ++lane)
                isRead[node.source[s][lane].Node()] = true;
    }
    return isRead;
}

/// Only what the results need, in the same order.
void Keep(const HlGraph& graph, const HlRefs& results, HlComputation& madeOut)
{
    const std::vector<bool> isRead = FindRead(graph, results);
    std::vector<uint32_t> places(isRead.size());
    const auto moved = [&](HlRef ref) {
        const HlRef target(places[ref.Node()], ref.Lane());
        return ref.IsNegative() ? target.Negated() : target;
    };
    for (size_t i = 0; i < isRead.size(); ++i) {
        if (!isRead[i])
            continue;
        places[i] = static_cast<uint32_t>(madeOut.steps.size());
        HlNode& node = madeOut.steps.emplace_back(graph.Nodes()[i]);
        for (unsigned s = 0; s < node.sources; ++s)
            for (unsigned lane = 0; lane < node.width; ++lane)
                node.source[s][lane] = moved(node.source[s][lane]);
    }
    for (const HlRef ref : results)
        madeOut.results.push_back(moved(ref));
}

/// Which number of which parameter each lane of the constants is.
void TellCells(HlConstants& constants, const HlGraph& graph, HlComputation& madeOut)
{
    madeOut.cells.resize(size_t{constants.RegisterCount()} * 4);
    for (const HlUniform& uniform : constants.Uniforms()) {
        if (uniform.isSampler)
            continue;
        uint32_t cell = 0;
        for (const HlRef ref : constants.Read(*uniform.variable))
            madeOut.cells[size_t{graph.Of(ref).extra} * 4 + ref.Lane()] = {
                madeOut.parameters.size(), cell++};
        madeOut.parameters.emplace_back(uniform.variable->name);
    }
}

/// Inputs, four numbers to a node.
std::vector<HlValue> MakeArguments(const std::vector<HlShape>& shapes, const HlTypes& types,
                                   HlGraph& graph)
{
    std::vector<HlValue> values;
    uint32_t number = 0;
    for (const HlShape& shape : shapes) {
        const HlForm form = shape.rows > 1      ? HlForm::Matrix
                            : shape.columns > 1 ? HlForm::Vector
                                                : HlForm::Scalar;
        HlValue& value = values.emplace_back();
        value.type = types.Number(shape.base, form, shape.rows, shape.columns);
        for (uint32_t cell = 0; cell < value.type->cells; ++cell, ++number)
            value.refs.emplace_back(graph.Leaf(HlOp::Input, number / 4), number % 4);
    }
    return values;
}

} // namespace

std::shared_ptr<const HlComputation>
HlCompiler::Call(const FxToken& function, const std::vector<HlShape>& arguments, HlLog& log)
{
    ReadOnce();
    HlGraph graph(HlValueProfile());
    HlConstants constants(graph);
    HlRunner runner(unit, parser, graph, constants, log, budget);
    HlExpression call;
    call.kind = HlExpressionKind::Call;
    call.name = function.text;
    call.place = call.begin = function.place;
    std::vector<HlExpression> parts(arguments.size());
    for (size_t i = 0; i < arguments.size(); ++i) {
        parts[i].place = parts[i].begin = arguments[i].place;
        call.parts.push_back(&parts[i]);
    }
    std::vector<HlValue> values = MakeArguments(arguments, unit.types, graph);
    const HlValue result = runner.RunCall(call, values);
    if (!log.Failed() && !result.type->IsNumber())
        log.Error(function.place, FxError::TypeMismatch, FxDescribe(function) + " gives no number");
    if (log.Failed())
        return nullptr;
    const auto made = std::make_shared<HlComputation>();
    TellCells(constants, graph, *made);
    Keep(graph, result.refs, *made);
    made->shape = {result.type->base, result.type->rows, result.type->columns, function.place};
    return made;
}

} // namespace headless::hl
