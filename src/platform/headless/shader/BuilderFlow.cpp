// Blocks, loops, calls and returns of a program.

#include "platform/headless/shader/ProgramBuilder.h"

namespace headless::shader {

void ProgramBuilder::SetTruth(const Source& source, Operation& operation)
{
    operation.isInverted = source.modifier == SourceModifier::Not;
    if (source.place.kind == RegisterKind::ConstBool)
        operation.number = source.place.number;
    else
        operation.sources[0].place[0] = PredicatePlace(source.Component(0));
    operation.sources[0].step = 1;
}

void ProgramBuilder::AddIf(const Instruction& instruction)
{
    Operation operation = Simple(RunIfCompare);
    if (instruction.opcode == Opcode::Ifc) {
        operation.control = static_cast<uint8_t>(instruction.control);
        for (int i = 0; i < 2; ++i)
            operation.sources[i] = SourceOf(instruction.sources[i], Shape::Scalar, kMaskAll);
    } else {
        const Source& source = instruction.sources[0];
        operation.run = source.place.kind == RegisterKind::Predicate ? RunIfLanes : RunIfTruth;
        SetTruth(source, operation);
    }
    openBlocks.push_back(program.operations.size());
    Emit(operation);
}

void ProgramBuilder::AddLoopStart(const Instruction& instruction)
{
    const bool isLoop = instruction.opcode == Opcode::Loop;
    Operation operation = Simple(isLoop ? RunLoop : RunRep);
    operation.number = instruction.sources[isLoop ? 1 : 0].place.number;
    openLoops.push_back(program.operations.size());
    Emit(operation);
}

void ProgramBuilder::AddCall(const Instruction& instruction)
{
    Operation operation = Simple(RunCall);
    if (instruction.opcode == Opcode::CallNz) {
        const Source& source = instruction.sources[1];
        operation.run = source.place.kind == RegisterKind::Predicate ? RunCallLanes : RunCallTruth;
        SetTruth(source, operation);
    }
    calls.emplace_back(program.operations.size(), instruction.sources[0].place.number);
    Emit(operation);
}

/// A ret outside all blocks ends the subroutine or the shader; in a block it only stops the lanes
/// that reach it.
void ProgramBuilder::AddReturn(size_t)
{
    const bool isInBlock = !openBlocks.empty() || !openLoops.empty();
    Emit(Simple(isInBlock ? RunLeave : (isInLabel ? RunReturn : RunEnd)));
}

void ProgramBuilder::LinkCalls()
{
    for (const auto& [operation, label] : calls)
        program.operations[operation].target = labelPlaces[label];
}

bool ProgramBuilder::AddFlow(const Instruction& instruction, size_t at)
{
    switch (instruction.opcode) {
    case Opcode::If:
    case Opcode::Ifc:
        AddIf(instruction);
        break;
    case Opcode::Else:
    case Opcode::EndIf: {
        program.operations[openBlocks.back()].target = Here();
        openBlocks.pop_back();
        const bool isElse = instruction.opcode == Opcode::Else;
        if (isElse)
            openBlocks.push_back(program.operations.size());
        Emit(Simple(isElse ? RunElse : RunEndIf));
        break;
    }
    case Opcode::Rep:
    case Opcode::Loop:
        AddLoopStart(instruction);
        break;
    case Opcode::EndRep:
    case Opcode::EndLoop:
        Emit(Simple(RunEndLoop));
        program.operations[openLoops.back()].target = Here();
        openLoops.pop_back();
        break;
    case Opcode::Break:
        Emit(Simple(RunBreak));
        break;
    case Opcode::BreakC: {
        Operation operation = Simple(RunBreakCompare);
        operation.control = static_cast<uint8_t>(instruction.control);
        for (int i = 0; i < 2; ++i)
            operation.sources[i] = SourceOf(instruction.sources[i], Shape::Scalar, kMaskAll);
        Emit(operation);
        break;
    }
    case Opcode::BreakP: {
        Operation operation = Simple(RunBreakLanes);
        SetTruth(instruction.sources[0], operation);
        Emit(operation);
        break;
    }
    case Opcode::Call:
    case Opcode::CallNz:
        AddCall(instruction);
        break;
    case Opcode::Ret:
        AddReturn(at);
        break;
    case Opcode::Label:
        labelPlaces[instruction.sources[0].place.number] = Here();
        isInLabel = true;
        return true;
    default:
        return false;
    }
    EndInstruction();
    return true;
}

} // namespace headless::shader
