// Operands of a program, and its arithmetic.

#include "platform/headless/shader/ProgramBuilder.h"
#include "platform/headless/shader/InstructionTable.h"
#include "platform/headless/shader/RegisterTable.h"

#include <algorithm>

namespace headless::shader {

namespace {

/// Whether a component reads a place that one before it writes.
bool ReadsItsResult(const Operation& operation)
{
    for (int i = 1; i < operation.count; ++i)
        for (const Operand& source : operation.sources)
            if (source.step != 0 &&
                std::find(operation.out, operation.out + i, source.place[i]) != operation.out + i)
                return true;
    return false;
}

} // namespace

// ---- Operands

Operand ProgramBuilder::OperandAt(uint32_t base, uint32_t step) const
{
    Operand operand;
    for (uint32_t i = 0; i < 4; ++i)
        operand.place[i] = base + i * (step == 0 ? kConstantCopies : uint32_t{kMaxGroups});
    operand.step = step;
    return operand;
}

Indexing ProgramBuilder::IndexOf(const RelativeIndex& relative, const Register& place)
{
    Indexing indexing;
    indexing.byLoop = relative.base.kind == RegisterKind::Loop;
    if (!indexing.byLoop)
        indexing.indexPlace = PlaceOf(relative.base) + relative.component * kMaxGroups;
    indexing.ofConstants = place.kind == RegisterKind::Const;
    indexing.first = static_cast<int>(place.number);
    indexing.count = static_cast<int>(RegisterCount(place.kind, code.version));
    if (!indexing.ofConstants)
        indexing.base = PlaceOf({place.kind, 0});
    return indexing;
}

uint32_t ProgramBuilder::LoadIndexed(const Source& source)
{
    Operation operation = Simple(RunLoadIndexed);
    operation.indexing = IndexOf(source.relative, source.place);
    const uint32_t place = scratch[scratchUsed++];
    SetResult(place, kMaskAll, operation);
    Emit(operation);
    return place;
}

/// The register without swizzle and modifier.
Operand ProgramBuilder::RawSource(const Source& source)
{
    if (source.relative.isUsed)
        return OperandAt(LoadIndexed(source), 1);
    if (source.place.kind == RegisterKind::Const)
        return OperandAt(ConstantPlace(source.place.number), 0);
    return OperandAt(PlaceOf(source.place), 1);
}

uint32_t ProgramBuilder::Modify(const Source& source)
{
    Operation operation = Simple(RunModifier);
    operation.sources[0] = RawSource(source);
    operation.control = static_cast<uint8_t>(source.modifier);
    const uint32_t place = scratch[scratchUsed++];
    SetResult(place, kMaskAll, operation);
    Emit(operation);
    return place;
}

Operand ProgramBuilder::SourceOf(const Source& source, Shape shape, unsigned mask)
{
    const bool isSign = IsSignModifier(source.modifier);
    const Operand raw = isSign ? RawSource(source) : OperandAt(Modify(source), 1);
    Operand operand = raw;
    if (isSign) {
        operand.isAbsolute = IsAbsolute(source.modifier);
        operand.isNegated = IsNegated(source.modifier);
    }
    int count = 0;
    for (unsigned i = 0; i < 4; ++i) {
        if (shape == Shape::Each && (mask >> i & 1) == 0)
            continue;
        operand.place[count++] = raw.place[source.Component(i)];
    }
    return operand;
}

Operation ProgramBuilder::Simple(RunFunction run) const
{
    Operation operation;
    operation.run = run;
    operation.isFinished = true;
    for (Operand& source : operation.sources)
        source = OperandAt(0, 0);
    return operation;
}

void ProgramBuilder::SetResult(uint32_t base, unsigned mask, Operation& operation) const
{
    operation.count = 0;
    for (unsigned i = 0; i < 4; ++i) {
        if ((mask >> i & 1) == 0)
            continue;
        operation.out[operation.count] = base + i * kMaxGroups;
        operation.component[operation.count++] = static_cast<uint8_t>(i);
    }
}

/// One mask for each written component.
void ProgramBuilder::SetPredicate(const Instruction& instruction, Operation& operation)
{
    if (!instruction.isPredicated)
        return;
    operation.isFinished = false;
    operation.isPredicated = true;
    operation.isPredicateInverted = instruction.predicate.modifier == SourceModifier::Not;
    for (int i = 0; i < operation.count; ++i)
        operation.predicate[i] =
            PredicatePlace(instruction.predicate.Component(operation.component[i]));
}

/// Where the result goes, and what is done to it on its way. A result with an index goes to scratch
/// first.
void ProgramBuilder::SetResult(const Instruction& instruction, Operation& operation)
{
    const Destination& out = instruction.destination;
    operation.saturates = (out.modifiers & kResultSaturate) != 0;
    operation.scale = out.shift >= 0 ? static_cast<float>(1 << out.shift)
                                     : 1.0f / static_cast<float>(1 << -out.shift);
    operation.isFinished = !operation.saturates && out.shift == 0;
    if (!out.relative.isUsed) {
        SetResult(PlaceOf(out.place), out.mask, operation);
        SetPredicate(instruction, operation);
        return;
    }
    SetResult(resultScratch, out.mask, operation);
    Operation store = Simple(RunStoreIndexed);
    store.indexing = IndexOf(out.relative, out.place);
    SetResult(resultScratch, out.mask, store);
    for (int i = 0; i < store.count; ++i)
        store.sources[0].place[i] = store.out[i];
    store.sources[0].step = 1;
    SetPredicate(instruction, store);
    delayed.push_back(store);
}

void ProgramBuilder::EndInstruction()
{
    for (const Operation& operation : delayed)
        Emit(operation);
    delayed.clear();
    scratchUsed = 0;
    if (!program.operations.empty())
        program.operations.back().isCounted = true;
}

// ---- Arithmetic

void ProgramBuilder::AddArithmetic(const Instruction& instruction)
{
    const Kernel& kernel = *FindKernel(instruction.opcode);
    Operation operation = Simple(nullptr);
    SetResult(instruction, operation);
    bool hasSigns = false;
    const int count = std::min(instruction.sourceCount, 3);
    for (int i = 0; i < count; ++i) {
        const bool isWritten = kernel.shape == Shape::Each;
        operation.sources[i] = SourceOf(instruction.sources[i], kernel.shape,
                                        isWritten ? instruction.destination.mask : kMaskAll);
        hasSigns = hasSigns || operation.sources[i].isAbsolute || operation.sources[i].isNegated;
    }
    operation.run = hasSigns ? kernel.modified : kernel.plain;
    Emit(operation);
}

/// One product for each row. They go through scratch, as the result may be one of the sources.
void ProgramBuilder::AddMatrix(const Instruction& instruction)
{
    const bool isLong = instruction.opcode == Opcode::M4x4 || instruction.opcode == Opcode::M4x3;
    const Kernel& kernel = *FindKernel(isLong ? Opcode::Dp4 : Opcode::Dp3);
    const Operand vector = SourceOf(instruction.sources[0], Shape::Vector, kMaskAll);
    const uint32_t rows = AddRegister();
    for (int i = 0; i < MatrixRows(instruction.opcode); ++i) {
        const int kept = scratchUsed;
        Source row = instruction.sources[1];
        row.place.number += static_cast<unsigned>(i);
        Operation operation = Simple(kernel.modified);
        operation.sources[0] = vector;
        operation.sources[1] = SourceOf(row, Shape::Vector, kMaskAll);
        SetResult(rows, 1u << i, operation);
        Emit(operation);
        scratchUsed = kept;
    }
    Operation move = Simple(RunMove);
    SetResult(instruction, move);
    for (int i = 0; i < move.count; ++i)
        move.sources[0].place[i] = rows + move.component[i] * uint32_t{kMaxGroups};
    move.sources[0].step = 1;
    Emit(move);
}

/// Arithmetic that needs more than a table row.
void ProgramBuilder::AddOther(const Instruction& instruction)
{
    Operation operation = Simple(RunNothing);
    const bool isOldVertex = !code.version.isPixel && code.version.major == 1;
    Shape shape = Shape::Each;
    switch (instruction.opcode) {
    case Opcode::ExpP:
    case Opcode::LogP:
        operation.run = instruction.opcode == Opcode::ExpP ? RunOldExp : RunOldLog;
        shape = Shape::Vector;
        break;
    case Opcode::Mov:
    case Opcode::MovA:
        operation.run = isOldVertex ? RunRoundDown : RunRoundNearest;
        break;
    case Opcode::SetP:
        operation.run = RunCompare;
        operation.control = static_cast<uint8_t>(instruction.control);
        break;
    case Opcode::Dsx:
        operation.run = RunDerivativeX;
        break;
    case Opcode::Dsy:
        operation.run = RunDerivativeY;
        break;
    case Opcode::Bem:
        operation.run = RunBump;
        operation.sampler = static_cast<uint8_t>(instruction.destination.place.number);
        shape = Shape::Vector;
        break;
    default:
        break;
    }
    if (instruction.hasDestination)
        SetResult(instruction, operation);
    for (int i = 0; i < instruction.sourceCount; ++i)
        operation.sources[i] =
            SourceOf(instruction.sources[i], shape, instruction.destination.mask);
    if (instruction.opcode == Opcode::Bem) // each component from its own place
        operation.sources[0] = SourceOf(instruction.sources[0], Shape::Vector, kMaskAll);
    Emit(operation);
}

/// Both halves of a pair read what was there before it.
void ProgramBuilder::AddPair(const Instruction& first, const Instruction& second)
{
    const auto readsFirst = [&first](const Source& source) {
        return source.place == first.destination.place;
    };
    const bool clashes =
        std::any_of(second.sources, second.sources + second.sourceCount, readsFirst);
    if (!clashes) {
        Add(first);
        EndInstruction();
        Add(second);
        return;
    }
    const Register aside = {RegisterKind::Temp, 0xFFFF};
    Instruction early = first;
    early.destination.place = aside;
    Add(early);
    EndInstruction();
    Add(second);
    EndInstruction();
    Instruction late;
    late.opcode = Opcode::Mov;
    late.hasDestination = true;
    late.destination.place = first.destination.place;
    late.destination.mask = first.destination.mask;
    late.sourceCount = 1;
    late.sources[0].place = aside;
    Add(late);
}

void ProgramBuilder::Add(const Instruction& instruction)
{
    const bool isOldVertex = !code.version.isPixel && code.version.major == 1;
    const bool isToAddress = !code.version.isPixel && instruction.hasDestination &&
                             instruction.destination.place.kind == RegisterKind::Address;
    const bool isOldPower =
        isOldVertex && (instruction.opcode == Opcode::ExpP || instruction.opcode == Opcode::LogP);
    if (MatrixRows(instruction.opcode) > 0)
        AddMatrix(instruction);
    else if (!isToAddress && !isOldPower && FindKernel(instruction.opcode))
        AddArithmetic(instruction);
    else if (!AddTexture(instruction))
        AddOther(instruction);
}

void ProgramBuilder::Build()
{
    program = {};
    program.version = code.version;
    hasFlow = program.hasFlow = UsesFlow();
    program.mayRunLong = MayRunLong();
    AddRegister(); // place 0 always reads 0
    CollectDefinitions();
    for (const Instruction& instruction : code.instructions)
        if (instruction.hasDestination && !IsDeclaration(instruction.opcode) &&
            (instruction.destination.place.kind == RegisterKind::Temp ||
             instruction.destination.place.kind == RegisterKind::Address ||
             instruction.destination.place.kind == RegisterKind::Predicate))
            PlaceOf(instruction.destination.place);
    program.temporaries = registerEnd;
    PlaceIndexed();
    PlaceInputsAndOutputs();
    PlaceSpecial();
    for (uint32_t& place : scratch)
        place = AddRegister();
    resultScratch = AddRegister();
    const std::vector<Instruction>& all = code.instructions;
    for (size_t i = 0; i < all.size(); ++i) {
        if (IsDeclaration(all[i].opcode) || all[i].opcode == Opcode::Phase)
            continue;
        if (AddFlow(all[i], i))
            continue;
        if (i + 1 < all.size() && all[i + 1].isCoissued)
            AddPair(all[i], all[i + 1]);
        else if (!all[i].isCoissued)
            Add(all[i]);
        EndInstruction();
    }
    LinkCalls();
    if (code.version.isPixel && code.version.major == 1)
        program.outputs.push_back(
            {{RegisterKind::ColorOut, 0}, 0, 0, kMaskAll, PlaceOf({RegisterKind::Temp, 0})});
    for (Operation& operation : program.operations) {
        operation.readsItsResult = ReadsItsResult(operation);
        operation.eight = HasEightForms() ? EightFormOf(operation.run) : operation.run;
    }
    program.registerCount = registerEnd;
    program.ones = ones;
}

void Program::MakeRegisters()
{
    if (!registers.empty())
        return;
    const Lanes zero = Splat(0.0f), one = Splat(1.0f);
    registers.assign(registerCount / 4, {{zero, zero, zero, zero}});
    if (ones != 0)
        std::fill_n(registers.begin() + ones / 4, kRegisterPlaces / 4,
                    RegisterLine{{one, one, one, one}});
}

void BuildProgram(const Bytecode& code, Program& programOut)
{
    ProgramBuilder(code, programOut).Build();
}

} // namespace headless::shader
