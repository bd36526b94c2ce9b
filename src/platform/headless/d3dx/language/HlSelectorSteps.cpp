// Instructions of steps.

#include "platform/headless/d3dx/language/HlSelector.h"

#include <algorithm>
#include <bit>

namespace headless::hl {

namespace {

shader::Opcode OpcodeOf(HlOp op)
{
    using shader::Opcode;
    static constexpr struct {
        HlOp op;
        Opcode opcode;
    } kRows[] = {
        {HlOp::Mov, Opcode::Mov},  {HlOp::Saturate, Opcode::Mov},  {HlOp::Add, Opcode::Add},
        {HlOp::Mul, Opcode::Mul},  {HlOp::Mad, Opcode::Mad},       {HlOp::Min, Opcode::Min},
        {HlOp::Max, Opcode::Max},  {HlOp::Slt, Opcode::Slt},       {HlOp::Sge, Opcode::Sge},
        {HlOp::Cmp, Opcode::Cmp},  {HlOp::Frc, Opcode::Frc},       {HlOp::Abs, Opcode::Abs},
        {HlOp::Dsx, Opcode::Dsx},  {HlOp::Dsy, Opcode::Dsy},       {HlOp::Rcp, Opcode::Rcp},
        {HlOp::Rsq, Opcode::Rsq},  {HlOp::Exp, Opcode::Exp},       {HlOp::Log, Opcode::Log},
        {HlOp::Pow, Opcode::Pow},  {HlOp::Dot2, Opcode::Dp2Add},   {HlOp::Dot3, Opcode::Dp3},
        {HlOp::Dot4, Opcode::Dp4}, {HlOp::SinCos, Opcode::SinCos}, {HlOp::Nrm, Opcode::Nrm}};
    for (const auto& row : kRows)
        if (row.op == op)
            return row.opcode;
    return Opcode::Nop;
}

/// The published factors of sincos in the versions before 3.0.
constexpr std::array<float, 4> kSinCos1 = {-1.5500992e-006f, -2.1701389e-005f, 0.0026041667f,
                                           0.00026041668f};
constexpr std::array<float, 4> kSinCos2 = {-0.020833334f, -0.12500000f, 1.0f, 0.50000000f};

bool IsScalarStep(HlOp op)
{
    return (op >= HlOp::Rcp && op <= HlOp::Pow) || op == HlOp::SinCos;
}

} // namespace

/// Values that were copied or loaded may have changed.
void HlSelector::NewBlock()
{
    copies.clear();
    index = {};
}

void HlSelector::Run()
{
    for (uint32_t i = 1; i < graph.Nodes().size(); ++i) {
        const HlOp op = graph.Nodes()[i].op;
        if (HlHasEffect(op))
            Effect(i);
        else if (!HlIsLeaf(op) && liveness.Lanes(i) != 0)
            Step(i);
    }
    Outputs();
}

void HlSelector::Step(uint32_t number)
{
    const HlNode& node = graph.Nodes()[number];
    const HlSpot& spot = placement.Of(number);
    HlInstruction instruction;
    instruction.opcode = OpcodeOf(node.op);
    instruction.kind = spot.kind;
    instruction.number = spot.number;
    instruction.saturates = node.saturates || node.op == HlOp::Saturate;
    instruction.mask = 0;
    for (unsigned lane = 0; lane < node.lanes; ++lane)
        if ((liveness.Lanes(number) >> lane & 1) != 0)
            instruction.mask |= 1u << spot.component[lane];
    if (node.op == HlOp::Sample)
        Sample(number, instruction);
    else
        Plain(number, instruction);
}

void HlSelector::Plain(uint32_t number, HlInstruction& instruction)
{
    const HlNode& node = graph.Nodes()[number];
    const bool isOne = HlIsLanewise(node.op) && std::popcount(liveness.Lanes(number)) == 1;
    for (unsigned s = 0; s < node.sources; ++s) {
        if (isOne || IsScalarStep(node.op)) {
            const unsigned lane =
                isOne ? static_cast<unsigned>(std::countr_zero(liveness.Lanes(number))) : 0;
            instruction.sources.push_back(Spread(node.source[s][lane]));
        } else {
            instruction.sources.push_back(Source(placement.WantedOf(number, s), {}));
        }
    }
    if (node.op == HlOp::Dot2) {
        instruction.sources.push_back(Spread(HlRef())); // the sum begins with 0
    }
    if (node.op == HlOp::Nrm) {
        instruction.mask = 7;
        instruction.keepsSources = true;
    }
    if (node.op == HlOp::SinCos) {
        instruction.keepsSources = true;
        const bool isConstant = instruction.sources[0].kind != HlRegister::Virtual;
        if (isConstant)
            ToTemporary(instruction.sources[0], 1u << instruction.sources[0].component[0]);
        for (const auto& factors : {kSinCos1, kSinCos2}) {
            if (graph.Profile().major == 3)
                break;
            HlSource source;
            source.kind = HlRegister::Literal;
            source.number = literals.Whole(factors);
            instruction.sources.push_back(source);
        }
    }
    Emit(std::move(instruction));
}

void HlSelector::Sample(uint32_t number, HlInstruction& instruction)
{
    const HlNode& node = graph.Nodes()[number];
    const auto sampling = static_cast<HlSampling>(node.extra & 15);
    instruction.opcode = sampling == HlSampling::Level       ? Opcode::TexLdl
                         : sampling == HlSampling::Gradients ? Opcode::TexLdd
                                                             : Opcode::Tex;
    instruction.control = sampling == HlSampling::Projected ? shader::kLoadProjected
                          : sampling == HlSampling::Biased  ? shader::kLoadBiased
                                                            : 0;
    instruction.mask = 15;
    const Rules rules = {true, !IsFree()};
    for (unsigned s = 0; s < node.sources; ++s) {
        instruction.sources.push_back(
            Source(placement.WantedOf(number, s), s == 0 ? rules : Rules()));
        if (s == 0) {
            HlSource sampler;
            sampler.kind = HlRegister::Sampler;
            sampler.number = node.extra >> 4;
            instruction.sources.push_back(sampler);
        }
    }
    Emit(std::move(instruction));
}

// ---- Steps without a result

/// A truth is not 0: it differs from its negative.
void HlSelector::Condition(Opcode opcode, HlRef truth)
{
    HlInstruction instruction;
    instruction.opcode = opcode;
    instruction.control = static_cast<unsigned>(shader::Compare::Ne);
    instruction.sources = {Spread(truth), Spread(truth.Negated())};
    Emit(std::move(instruction));
}

void HlSelector::Effect(uint32_t number)
{
    const HlNode& node = graph.Nodes()[number];
    HlInstruction instruction;
    switch (node.op) {
    case HlOp::Kill: {
        HlWanted wanted;
        wanted.mask = 15;
        for (unsigned i = 0; i < 4; ++i)
            wanted.refs[i] = node.source[0][std::min<unsigned>(i, node.width - 1u)];
        const HlSource source = Source(wanted, {true, true});
        instruction.opcode = Opcode::TexKill;
        instruction.kind = source.kind;
        instruction.number = source.number;
        instruction.sources.push_back(source); // is read, though its parameter looks like a result
        code.instructions.push_back(instruction);
        return;
    }
    case HlOp::SetVariable: {
        const HlSpot& spot = placement.Of(node.extra);
        HlWanted wanted;
        for (unsigned lane = 0; lane < node.width; ++lane)
            if ((liveness.Lanes(node.extra) >> lane & 1) != 0) {
                wanted.refs[spot.component[lane]] = node.source[0][lane];
                wanted.mask |= 1u << spot.component[lane];
            }
        CopyParts(HlRegister::Virtual, spot.number, wanted);
        break;
    }
    case HlOp::BreakIf:
        Condition(Opcode::BreakC, node.source[0][0]);
        break;
    case HlOp::If:
        Condition(Opcode::Ifc, node.source[0][0]);
        break;
    case HlOp::Repeat: {
        HlSource rounds;
        rounds.kind = HlRegister::Whole;
        rounds.number = node.extra;
        instruction.opcode = Opcode::Rep;
        instruction.sources.push_back(rounds);
        code.instructions.push_back(instruction);
        break;
    }
    default:
        instruction.opcode = node.op == HlOp::EndRepeat ? Opcode::EndRep
                             : node.op == HlOp::Else    ? Opcode::Else
                                                        : Opcode::EndIf;
        code.instructions.push_back(instruction);
        break;
    }
    NewBlock();
}

/// What is not in its output yet goes there last.
void HlSelector::Outputs()
{
    const HlProfile& profile = graph.Profile();
    for (uint32_t o = 0; o < outputs.size(); ++o) {
        HlWanted wanted;
        for (unsigned i = 0; i < 4; ++i) {
            const HlRef ref = outputs[o].refs[i];
            const bool isThere = (outputs[o].mask >> i & 1) == 0 ||
                                 placement.Of(ref.Node()).kind == HlRegister::Output;
            wanted.refs[i] = ref;
            wanted.mask |= isThere ? 0 : 1u << i;
        }
        if (!profile.isPixel || profile.major == 3) {
            CopyParts(HlRegister::Output, o, wanted);
            continue;
        }
        const bool isDepth = outputs[o].mask == 1;
        HlInstruction copy;
        copy.opcode = Opcode::Mov;
        copy.kind = HlRegister::Output;
        copy.number = o;
        copy.mask = 15;
        wanted.mask = 15;
        copy.sources.push_back(isDepth ? Spread(outputs[o].refs[0]) : Source(wanted, {}));
        Emit(std::move(copy));
    }
}

} // namespace headless::hl
