#pragma once

#include "platform/headless/d3dx/effect/EffectPool.h"
#include "platform/headless/d3dx/effect/FxExpressionReader.h"
#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/effect/FxModel.h"

namespace headless::hl {
class HlCompiler;
}

namespace headless::fx {

/// Parses an effect's tokens into a model. Anything invalid becomes an error in `diagnostics`.
class FxParser {
public:
    /// `pool` may be null. All arguments outlive this.
    FxParser(std::vector<FxToken> text, FxDiagnostics& log, EffectPool* effectPool,
             FxModel& target);
    ~FxParser();

    bool Run();

private:
    /// What precedes a declared name.
    struct Declaration {
        FxType type;
        DWORD flags = 0;
        bool isStatic = false;
        bool isColumnMajor = false;
    };
    using List = std::vector<std::unique_ptr<FxParameter>>;
    /// What stands behind `compile`.
    struct Compilation {
        FxToken profile, function;
        size_t argumentsAt = 0;
    };

    // FxParserDeclarations.cpp
    bool TopLevel();
    bool Modifiers(Declaration& declarationOut);
    bool Type(FxType& typeOut);
    bool TemplateType(bool isMatrix, FxType& typeOut);
    bool Struct(FxType& typeOut);
    bool Members(FxStruct& structure);
    bool AddMember(FxStruct& structure, FxMember member, FxPlace place);
    bool TypeDefinition();
    bool Variables();
    bool Variable(const Declaration& declaration, const FxToken& name);
    bool Head(const Declaration& declaration, const FxToken& name, FxParameter& parameter);
    bool Keep(const Declaration& declaration, const FxToken& name,
              std::unique_ptr<FxParameter> made);
    bool Function(const FxToken& name);
    bool Lengths(FxType& typeInOut);
    bool StateLength(FxType& typeInOut, std::unique_ptr<FxParameter>& parameterInOut);
    bool Semantic(std::string& semanticOut, bool& hasSemanticOut);
    bool Annotations(List& annotationsOut);
    bool Annotation(List& annotationsOut);

    // FxParserValues.cpp
    std::unique_ptr<FxParameter> Make(const FxType& type, FxPlace place);
    bool CountValues(const FxParameter& parameter, size_t& countOut);
    bool CountNumbers(size_t& countOut);
    bool Value(FxParameter& parameter);
    bool Numbers(FxParameter& parameter);
    bool NumberList(FxParameter& parameter, const std::vector<D3DXPARAMETER_TYPE>& types);
    bool ObjectList(FxParameter& parameter);
    bool Object(FxParameter& parameter);
    bool String(FxParameter& parameter);
    bool Sampler(FxParameter& parameter);
    bool Shader(bool isVertex, DWORD& versionOut, std::shared_ptr<FxShader>& shaderOut);
    bool Compile(bool isVertex, DWORD& versionOut, std::shared_ptr<FxShader>& shaderOut);
    void CompileAs(std::string_view profileName, bool isVertex, const Compilation& what,
                   FxShader& shaderOut);
    void PairShaders(FxPass& pass);
    hl::HlCompiler& Compiler();
    std::shared_ptr<const FxComputation>
    CallFunction(const FxToken& name, const std::vector<FxExpressionReader::Argument>& arguments);
    std::shared_ptr<const FxComputation> CompileFunction(const FxToken& name,
                                                         const std::vector<hl::HlShape>& arguments);
    DWORD ShaderVersion(bool isVertex, size_t ahead) const;
    bool ReadsUnmodelled(const FxParameter& parameter) const;
    bool IsNull() const;

    // FxParserTechniques.cpp
    bool Technique();
    bool Pass(FxTechnique& technique);
    bool Assignment(const FxState& state, FxAssignment& assignmentOut);
    bool StateIndex(const FxState& state, UINT& indexOut);
    bool StateValue(const FxState& state, FxAssignment& assignmentOut);
    bool CheckValue(const FxState& state, FxPlace place, FxExpression& value);
    bool ObjectValue(const FxState& state, FxAssignment& assignmentOut);
    bool PassState(FxPass& pass);
    bool IsInlineSampler(const FxState& state) const;
    bool InlineSampler(const FxState& state, FxPass& pass);
    void KeepLack(FxPass& pass, const FxToken& word, const std::string& what) const;
    bool IsUnmodelledPlace(const FxState& state) const;
    bool PassShader(const FxState& state, FxPass& pass);
    FxShape RegisterShape() const;
    DWORD ParameterShader(const FxParameter& shader, const FxToken& value, FxPass& pass) const;
    void KeepShaderLack(FxPass& pass, const FxToken& value, DWORD version,
                        const FxShader* shader) const;

    FxDiagnostics& diagnostics;
    EffectPool* pool; ///< not owned
    FxModel& model;
    FxWords words;
    FxExpressionReader expressions;
    std::vector<FxNumber> scratch;
    int structDepth = 0;
    FxSizes sizes;
    size_t touchedLeft = kFxMaxTouched;
    size_t rowsLeft = kFxMaxRows;
    size_t stepsLeft = kFxMaxValueSteps;
    std::unique_ptr<hl::HlCompiler> compiler; ///< null until a shader is compiled
    std::map<const FxShader*, Compilation> compiled;
    /// Calls in values by the name and the types of the arguments.
    std::map<std::string, std::shared_ptr<const FxComputation>> functions;
};

} // namespace headless::fx
