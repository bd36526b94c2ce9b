#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxConstantTable.h"
#include "platform/headless/d3dx/effect/FxNumber.h"

namespace headless::fx {

/// Where an operand of a program is, with its public number.
enum class FxProgramTable : uint8_t {
    None = 0,
    Literal = 1, ///< doubles
    Input = 2,   ///< parameters, as floats
    FloatOut = 4,
    TruthOut = 5,
    WholeOut = 6,
    Temporary = 7, ///< floats
};
inline constexpr size_t kFxProgramTables = 8;

/// A number, or the first of several. Registers have four numbers.
struct FxProgramPlace {
    FxProgramTable table = FxProgramTable::None;
    UINT offset = 0; ///< in numbers
};

struct FxProgramOperand {
    FxProgramPlace place;
    FxProgramPlace index; ///< registers to add; of no table for none
};

struct FxProgramOperation;

struct FxProgramStep {
    const FxProgramOperation* operation = nullptr; ///< not owned, lives in its table
    UINT count = 1;                                ///< components
    bool isFirstScalar = false; ///< its first component stands for all of the first operand
    std::vector<FxProgramOperand> sources;
    FxProgramPlace target;

    const char* Name() const;
    UINT ResultCount() const;
};

/// A computation in compiled form: the value of a state, an index, or the constants that a shader gets
/// computed beforehand. It computes with doubles, and stores floats.
class FxProgram {
public:
    /// `code` is a version word with comments behind it: 'CTAB' for inputs, 'CLIT' for literals, 'FXLC' for
    /// instructions. False if it is damaged, or takes more rows (`FxProgramInputs::Bind`) and registers than
    /// are left.
    bool Read(std::span<const DWORD> code, const FxParameterNames& parameters,
              size_t& rowsLeftInOut);

    /// Computes the outputs from what the parameters hold now.
    void Run();
    const std::vector<FxProgramStep>& Steps() const { return steps; }
    /// A number of the literals or of an output table; 0 if the program has none there.
    double Output(FxProgramTable table, UINT offset) const;
    /// The registers of a table that the program writes, in rising order.
    const std::vector<UINT>& Written(FxProgramTable table) const
    {
        return written[static_cast<size_t>(table)];
    }
    /// Runs, and gives the first float outputs as a value of the shape.
    FxNumber Evaluate(const FxShape& shape);

    FxProgramInputs inputs;

private:
    class Words;

    bool ReadSteps(std::span<const DWORD> code);
    bool ReadStep(Words& words, FxProgramStep& stepOut);
    bool ReadLiterals(std::span<const DWORD> words);
    static bool ReadPlace(Words& words, FxProgramPlace& placeOut);
    static bool ReadOperand(Words& words, FxProgramOperand& operandOut);
    void Need(const FxProgramPlace& place, UINT count);
    bool MakeTables(size_t& rowsLeftInOut);
    void NoteWritten(const FxProgramPlace& place, UINT count);

    double Number(FxProgramTable table, size_t offset) const;
    double Source(const FxProgramOperand& operand, UINT component) const;
    void Store(const FxProgramPlace& place, UINT component, double value);
    void RunStep(const FxProgramStep& step);

    std::vector<FxProgramStep> steps;
    size_t registers[kFxProgramTables] = {};      ///< that the tables have
    std::vector<double> tables[kFxProgramTables]; ///< by their numbers
    std::vector<UINT> written[kFxProgramTables];
};

} // namespace headless::fx
