// Texture instructions of a program.

#include "platform/headless/shader/ProgramBuilder.h"

namespace headless::shader {

namespace {

Register Stage(const Instruction& instruction)
{
    return instruction.destination.place;
}

} // namespace

void ProgramBuilder::AddKill(const Instruction& instruction)
{
    Operation operation = Simple(RunKill);
    const bool isOld = code.version.major == 1;
    const bool isCoordinate = isOld && code.version.minor < 4;
    const Register place = Stage(instruction);
    const Operand all = OperandAt(isCoordinate ? CoordinatePlace(place.number) : PlaceOf(place), 1);
    operation.sources[0] = all;
    const unsigned mask = isOld ? kMaskX | kMaskY | kMaskZ : instruction.destination.mask;
    operation.count = 0;
    for (unsigned i = 0; i < 4; ++i)
        if ((mask >> i & 1) != 0)
            operation.sources[0].place[operation.count++] = all.place[i];
    operation.component[0] = 0;
    if (instruction.isPredicated) {
        operation.isPredicated = true;
        operation.isPredicateInverted = instruction.predicate.modifier == SourceModifier::Not;
        operation.predicate[0] = PredicatePlace(instruction.predicate.Component(0));
    }
    Emit(operation);
}

void ProgramBuilder::AddDepth(const Instruction&, uint32_t from, uint8_t control)
{
    Operation operation = Simple(RunDepth);
    operation.sources[0] = OperandAt(from, 1);
    operation.control = control;
    SetResult(program.depth, kMaskX, operation);
    Emit(operation);
}

/// texld and its kin from ps 1.4 on.
void ProgramBuilder::AddLoad(const Instruction& instruction)
{
    Operation operation = Simple(RunSample);
    operation.control = static_cast<uint8_t>(instruction.control);
    if (instruction.opcode == Opcode::TexLdl)
        operation.run = RunSampleLevel;
    const bool isOld = code.version.major == 1;
    SetResult(instruction, operation);
    operation.sampler = static_cast<uint8_t>(isOld ? Stage(instruction).number
                                                   : instruction.sources[1].place.number);
    operation.sources[0] = SourceOf(instruction.sources[0], Shape::Vector, kMaskAll);
    if (instruction.opcode == Opcode::TexLdd) {
        operation.run = RunSampleSlopes;
        for (int i = 1; i < 3; ++i)
            operation.sources[i] = SourceOf(instruction.sources[i + 1], Shape::Vector, kMaskAll);
    }
    for (int i = 0; !isOld && i < operation.count; ++i)
        operation.component[i] =
            static_cast<uint8_t>(instruction.sources[1].Component(operation.component[i]));
    program.samplers |= 1u << operation.sampler;
    Emit(operation);
}

// ---- ps 1.1 to 1.3

/// Reads the stage of the result at coordinates that an operation before has put in `coordinates`.
void ProgramBuilder::AddOldSample(const Instruction& instruction, uint32_t place)
{
    Operation operation = Simple(RunSample);
    SetResult(instruction, operation);
    operation.sources[0] = OperandAt(place, 1);
    operation.sampler = static_cast<uint8_t>(Stage(instruction).number);
    program.samplers |= 1u << operation.sampler;
    Emit(operation);
}

/// texcoord: the coordinates as a colour; texcrd of 1.4 keeps them as they are.
void ProgramBuilder::AddOldCoordinate(const Instruction& instruction)
{
    Operation operation = Simple(RunMove);
    SetResult(instruction, operation);
    if (instruction.sourceCount > 0) {
        operation.sources[0] =
            SourceOf(instruction.sources[0], Shape::Each, instruction.destination.mask);
        Emit(operation);
        return;
    }
    const Operand all = OperandAt(CoordinatePlace(Stage(instruction).number), 1);
    operation.saturates = true;
    operation.isFinished = false;
    operation.sources[0] = all;
    for (int i = 0; i < operation.count; ++i)
        operation.sources[0].place[i] = all.place[operation.component[i]];
    Emit(operation);
    Operation alpha = Simple(RunMove); // the fourth coordinate counts as 1
    SetResult(PlaceOf(Stage(instruction)), instruction.destination.mask & kMaskW, alpha);
    alpha.sources[0] = OperandAt(OnePlace(), 1);
    if (alpha.count > 0)
        Emit(alpha);
}

void ProgramBuilder::AddOldBump(const Instruction& instruction)
{
    Operation move = Simple(RunBumpCoordinate);
    const Operand bump = SourceOf(instruction.sources[0], Shape::Vector, kMaskAll);
    move.sampler = static_cast<uint8_t>(Stage(instruction).number);
    move.sources[0] = OperandAt(CoordinatePlace(Stage(instruction).number), 1);
    move.sources[1] = bump;
    SetResult(resultScratch, kMaskAll, move);
    Emit(move);
    AddOldSample(instruction, resultScratch);
    if (instruction.opcode != Opcode::TexBemL)
        return;
    Operation light = Simple(RunLuminance);
    light.sampler = move.sampler;
    light.sources[0] = OperandAt(PlaceOf(Stage(instruction)), 1);
    light.sources[1] = bump;
    SetResult(instruction, light);
    Emit(light);
}

/// A colour as coordinates: alpha and red, green and blue, or all three.
void ProgramBuilder::AddOldColourLookup(const Instruction& instruction)
{
    Source source = instruction.sources[0];
    constexpr unsigned kAlphaRed = 0x43, kGreenBlue = 0xA9; // w, x and y, z
    if (instruction.opcode != Opcode::TexReg2Rgb)
        source.swizzle = instruction.opcode == Opcode::TexReg2Ar ? kAlphaRed : kGreenBlue;
    Operation operation = Simple(RunSample);
    SetResult(instruction, operation);
    operation.sources[0] = SourceOf(source, Shape::Vector, kMaskAll);
    operation.sampler = static_cast<uint8_t>(Stage(instruction).number);
    program.samplers |= 1u << operation.sampler;
    Emit(operation);
}

/// The product of the stage's coordinates with the source becomes the next row of the result.
void ProgramBuilder::AddOldMatrixRow(const Instruction& instruction)
{
    if (matrix == 0)
        matrix = AddRegister();
    Operation operation = Simple(FindKernel(Opcode::Dp3)->modified);
    operation.sources[0] = OperandAt(CoordinatePlace(Stage(instruction).number), 1);
    operation.sources[1] = SourceOf(instruction.sources[0], Shape::Vector, kMaskAll);
    SetResult(matrix, 1u << matrixRows, operation);
    Emit(operation);
    matrixCoordinates[matrixRows] = Stage(instruction).number;
    ++matrixRows;
}

void ProgramBuilder::AddOldMatrixEnd(const Instruction& instruction)
{
    AddOldMatrixRow(instruction);
    const int rows = matrixRows;
    matrixRows = 0;
    const bool reflects =
        instruction.opcode == Opcode::TexM3x3Spec || instruction.opcode == Opcode::TexM3x3VSpec;
    if (instruction.opcode == Opcode::TexM3x2Depth) {
        AddDepth(instruction, matrix, 0);
        return;
    }
    if (instruction.opcode == Opcode::TexM3x3 || instruction.opcode == Opcode::TexDp3) {
        Operation move = Simple(RunMove);
        SetResult(instruction, move);
        for (int i = 0; i < move.count; ++i)
            move.sources[0].place[i] =
                rows == 1
                    ? matrix
                    : (move.component[i] == 3 ? OnePlace()
                                              : matrix + move.component[i] * uint32_t{kMaxGroups});
        move.sources[0].step = 1;
        Emit(move);
        return;
    }
    if (reflects) {
        Operation reflect = Simple(RunReflect);
        reflect.sources[0] = OperandAt(matrix, 1);
        if (instruction.opcode == Opcode::TexM3x3Spec)
            reflect.sources[1] = SourceOf(instruction.sources[1], Shape::Vector, kMaskAll);
        reflect.sources[1].step =
            instruction.opcode == Opcode::TexM3x3Spec ? reflect.sources[1].step : 1;
        for (int i = 0; instruction.opcode == Opcode::TexM3x3VSpec && i < 3; ++i)
            reflect.sources[1].place[i] = CoordinatePlace(matrixCoordinates[i]) + 3 * kMaxGroups;
        SetResult(resultScratch, kMaskAll, reflect);
        Emit(reflect);
    }
    AddOldSample(instruction, reflects ? resultScratch : matrix);
}

bool ProgramBuilder::AddOldTexture(const Instruction& instruction)
{
    switch (instruction.opcode) {
    case Opcode::TexBem:
    case Opcode::TexBemL:
        AddOldBump(instruction);
        return true;
    case Opcode::TexReg2Ar:
    case Opcode::TexReg2Gb:
    case Opcode::TexReg2Rgb:
        AddOldColourLookup(instruction);
        return true;
    case Opcode::TexM3x2Pad:
    case Opcode::TexM3x3Pad:
        AddOldMatrixRow(instruction);
        return true;
    case Opcode::TexM3x2Tex:
    case Opcode::TexM3x2Depth:
    case Opcode::TexM3x3Tex:
    case Opcode::TexM3x3Spec:
    case Opcode::TexM3x3VSpec:
    case Opcode::TexM3x3:
    case Opcode::TexDp3:
    case Opcode::TexDp3Tex:
        AddOldMatrixEnd(instruction);
        return true;
    default:
        return false;
    }
}

bool ProgramBuilder::AddTexture(const Instruction& instruction)
{
    const bool isOldest = code.version.isPixel && code.version.major == 1 && code.version.minor < 4;
    switch (instruction.opcode) {
    case Opcode::TexKill:
        AddKill(instruction);
        return true;
    case Opcode::TexDepth:
        AddDepth(instruction, PlaceOf(Stage(instruction)), 1);
        return true;
    case Opcode::TexCoord:
        AddOldCoordinate(instruction);
        return true;
    case Opcode::TexLdl:
    case Opcode::TexLdd:
        AddLoad(instruction);
        return true;
    case Opcode::Tex:
        if (!isOldest) {
            AddLoad(instruction);
            return true;
        }
        AddOldSample(instruction, CoordinatePlace(Stage(instruction).number));
        program.operations.back().run = RunSampleStage;
        return true;
    default:
        return AddOldTexture(instruction);
    }
}

} // namespace headless::shader
