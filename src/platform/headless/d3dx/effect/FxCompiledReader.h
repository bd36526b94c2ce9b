#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/d3dx/effect/EffectPool.h"
#include "platform/headless/d3dx/effect/FxCompiledWords.h"
#include "platform/headless/d3dx/effect/FxDiagnostics.h"
#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/effect/FxModel.h"

namespace headless::fx {

/// The first word of a compiled effect that this host reads.
inline constexpr uint32_t kFxCompiledTag = 0xFEFF0901;

inline bool FxIsCompiled(std::string_view bytes)
{
    return bytes.size() >= 4 && FxCompiledWords::WordAt(bytes, 0) == kFxCompiledTag;
}

/// Reads a compiled effect (fx_2_0) into a model: a pool of types, names and values, then the parameters,
/// techniques and passes, which refer to it by offsets, then the contents of objects.
class FxCompiledReader {
public:
    /// `effectPool` may be null. All arguments outlive this. `errorPlace` is what errors and faults name.
    FxCompiledReader(std::string_view file, FxPlace errorPlace, FxDiagnostics& log,
                     EffectPool* effectPool, FxModel& target);

    /// False with an error in the diagnostics if the file is damaged.
    bool Run();

private:
    using List = std::vector<std::unique_ptr<FxParameter>>;

    // FxCompiledReader.cpp
    bool Header(uint32_t& parametersOut, uint32_t& techniquesOut);
    bool Parameters(uint32_t count);
    bool AddParameter(std::unique_ptr<FxParameter> parameter);
    bool Annotations(uint32_t count, List& annotationsOut);
    std::unique_ptr<FxParameter> Make(uint32_t type, uint32_t value);
    bool Type(FxCompiledWords& words, int depth, FxMember& memberOut);
    bool Extents(FxCompiledWords& words, FxType& typeOut);
    bool Members(FxCompiledWords& words, int depth, FxType& typeOut);
    bool Name(uint32_t offset, std::string& nameOut);
    bool Value(FxCompiledWords& words, FxParameter& parameter);
    bool One(FxCompiledWords& words, FxParameter& parameter);
    bool Numbers(FxCompiledWords& words, FxParameter& parameter);
    bool Object(FxCompiledWords& words, FxParameter& parameter);
    bool SamplerStates(FxCompiledWords& words, FxParameter& sampler);

    // FxCompiledPasses.cpp
    bool Techniques(uint32_t count);
    bool Technique(FxTechnique& technique);
    bool Pass(FxPass& pass);
    bool State(FxCompiledWords& words, FxPass* pass, std::vector<FxAssignment>& statesOut);
    bool StateValue(uint32_t type, uint32_t value, FxAssignment& assignment);
    static void SettleShader(const FxAssignment& assignment, FxPass& pass);
    bool Finish();

    // FxCompiledObjects.cpp
    bool Strings(uint32_t count);
    bool String(FxParameter& parameter, std::string_view bytes);
    bool Resources(uint32_t count);
    bool Resource();
    FxAssignment* ResourceState(uint32_t technique, uint32_t index, uint32_t element,
                                uint32_t state);
    bool Code(std::string_view bytes, FxAssignment& assignment);
    const FxParameter* Named(const std::string& name) const;
    bool Reference(std::string_view bytes, FxAssignment& assignment);
    bool Selector(std::string_view bytes, FxAssignment& assignment);
    bool Program(std::string_view bytes, const FxShape& shape, FxExpression& out);

    /// Counts things that take memory and have few bytes in the file.
    bool Count(size_t nodes);
    bool Damaged(const std::string& what);
    bool DamagedEnd();
    bool DamagedOffset();
    bool DamagedType();
    bool DamagedProgram();

    std::string_view bytes;
    FxPlace place;
    FxDiagnostics& diagnostics;
    EffectPool* pool; ///< not owned
    FxModel& model;
    std::string_view data;             ///< what offsets lead to
    FxCompiledWords body;              ///< what follows it
    std::vector<FxParameter*> objects; ///< by their numbers, not owned; null for those of states
    FxSizes sizes;
    size_t rowsLeft = kFxMaxRows;
    size_t touchedLeft = kFxMaxTouched;
    bool isStateValue =
        false; ///< what is read is thrown away; it has no contents, and no states in it
};

} // namespace headless::fx
