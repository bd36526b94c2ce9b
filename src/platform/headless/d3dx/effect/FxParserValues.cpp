// Parameters and their initial values.

#include <algorithm>
#include <utility>

#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/effect/FxParser.h"
#include "platform/headless/d3dx/effect/FxShader.h"
#include "platform/headless/d3dx/language/HlCompiler.h"

namespace headless::fx {

namespace {

/// The types of all cells in order. Struct nesting is limited.
void ListCellTypes(const FxParameter& parameter, std::vector<D3DXPARAMETER_TYPE>& typesOut)
{
    if (parameter.IsNumeric())
        typesOut.insert(typesOut.end(), parameter.ValueCount(), parameter.type);
    else
        for (const auto& part : parameter.parts)
            ListCellTypes(*part, typesOut);
}

bool HasOnlyNumbers(const FxParameter& parameter)
{
    if (parameter.kind != D3DXPC_STRUCT)
        return parameter.IsNumeric();
    return std::all_of(parameter.parts.begin(), parameter.parts.end(),
                       [](const auto& part) { return HasOnlyNumbers(*part); });
}

std::string Unquote(std::string_view text)
{
    static constexpr std::pair<char, char> kEscapes[] = {
        {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'0', '\0'}};
    std::string result;
    for (size_t i = 1; i + 1 < text.size(); ++i) {
        char c = text[i];
        if (c == '\\' && i + 2 < text.size()) {
            c = text[++i];
            for (const auto& [letter, meaning] : kEscapes)
                c = c == letter ? meaning : c;
        }
        result += c;
    }
    return result;
}

} // namespace

// ---- Making

std::unique_ptr<FxParameter> FxParser::Make(const FxType& type, FxPlace place)
{
    const UINT elements = type.Elements();
    if (!sizes.Add(type, elements)) {
        words.FailAt(place, FxError::Limit, "the effect has too many parameters");
        return nullptr;
    }
    return FxMakeParameter(type, elements);
}

// ---- Initial values

bool FxParser::Value(FxParameter& parameter)
{
    return HasOnlyNumbers(parameter) ? Numbers(parameter) : ObjectList(parameter);
}

/// Whether this host cannot store the initial value: that of a struct with textures or strings, or
/// one with a name that this host does not support.
bool FxParser::ReadsUnmodelled(const FxParameter& parameter) const
{
    if (parameter.kind == D3DXPC_STRUCT && !HasOnlyNumbers(parameter))
        return true;
    return !parameter.IsShader() && words.FindInValue([this](const FxToken& word) {
        return word.kind == FxTokenKind::Identifier && model.names.IsUnmodelled(word.text);
    });
}

/// How many elements of the outermost dimension the initial value has; `parameter` has one of them.
bool FxParser::CountValues(const FxParameter& parameter, size_t& countOut)
{
    const FxPlace place = words.Peek().place;
    if (!words.Is("{"))
        return words.Unexpected("'{'");
    size_t one = parameter.elements;
    if (HasOnlyNumbers(parameter)) {
        std::vector<D3DXPARAMETER_TYPE> types;
        ListCellTypes(parameter, types);
        one = types.size();
        if (!CountNumbers(countOut))
            return false;
    } else {
        for (words.Next(); !words.Is("}"); ++countOut)
            if (!words.SkipValue() || (!words.Accept(",") && !words.Is("}")))
                return words.Unexpected("',' or '}'");
    }
    if (countOut % std::max<size_t>(one, 1) != 0)
        return words.FailAt(place, FxError::BadInitializer,
                            "there are " + std::to_string(countOut) +
                                " values, not a multiple of " + std::to_string(one));
    countOut /= std::max<size_t>(one, 1);
    return true;
}

/// The numbers of a list in braces, whatever their order.
bool FxParser::CountNumbers(size_t& countOut)
{
    size_t depth = 0;
    do {
        if (words.Accept("{")) {
            ++depth;
        } else if (words.Accept("}")) {
            --depth;
            words.Accept(",");
        } else {
            FxExpression expression;
            if (!expressions.Read(expression))
                return false;
            countOut += expression.Shape().Count();
            if (!words.Accept(",") && !words.Is("}"))
                return words.Unexpected("',' or '}'");
        }
    } while (depth > 0);
    return true;
}

bool FxParser::Numbers(FxParameter& parameter)
{
    if (words.Is("{")) {
        std::vector<D3DXPARAMETER_TYPE> types;
        ListCellTypes(parameter, types);
        return NumberList(parameter, types);
    }
    const FxPlace place = words.Peek().place;
    FxExpression expression;
    if (!expressions.Read(expression))
        return false;
    if (!parameter.IsNumeric() || parameter.IsArray())
        return words.FailAt(place, FxError::BadInitializer, "the values must stand in braces");
    if (!FxAddConversion(expression, parameter.Shape()))
        return words.FailAt(place, FxError::TypeMismatch, "the value is too small");
    const FxNumber number = expression.Evaluate(scratch);
    std::copy_n(number.cells.begin(), parameter.CellCount(), parameter.Cells());
    return true;
}

/// Braces inside the list only group: only the number of values counts.
bool FxParser::NumberList(FxParameter& parameter, const std::vector<D3DXPARAMETER_TYPE>& types)
{
    const FxPlace place = words.Peek().place;
    FxCell* cell = parameter.storage->cells.data() + parameter.first;
    size_t count = 0;
    size_t depth = 0;
    do {
        if (words.Accept("{")) {
            ++depth;
            continue;
        }
        if (words.Accept("}")) {
            --depth;
            if (depth > 0 && !words.Accept(",") && !words.Is("}"))
                return words.Unexpected("'}'");
            continue;
        }
        FxExpression expression;
        const FxPlace at = words.Peek().place;
        if (!expressions.Read(expression))
            return false;
        const FxNumber number = expression.Evaluate(scratch);
        for (UINT i = 0; i < number.shape.Count(); ++i) {
            if (count == types.size())
                return words.FailAt(at, FxError::BadInitializer,
                                    "there are more than " + std::to_string(count) + " values");
            cell[count] = FxConvert(number.cells[i], number.shape.type, types[count]);
            ++count;
        }
        if (!words.Accept(",") && !words.Is("}"))
            return words.Unexpected("',' or '}'");
    } while (depth > 0);
    return count == types.size() ||
           words.FailAt(place, FxError::BadInitializer,
                        "there are " + std::to_string(count) + " values, not " +
                            std::to_string(types.size()));
}

bool FxParser::ObjectList(FxParameter& parameter)
{
    if (!parameter.IsArray())
        return Object(parameter);
    const FxPlace place = words.Peek().place;
    if (!words.Expect("{"))
        return false;
    size_t count = 0;
    while (!words.Accept("}")) {
        if (count == parameter.parts.size())
            return words.Fail(FxError::BadInitializer,
                              "there are more than " + std::to_string(count) + " values");
        if (!Object(*parameter.parts[count++]))
            return false;
        if (!words.Accept(",") && !words.Is("}"))
            return words.Unexpected("',' or '}'");
    }
    return count == parameter.parts.size() ||
           words.FailAt(place, FxError::BadInitializer,
                        "there are " + std::to_string(count) + " values, not " +
                            std::to_string(parameter.parts.size()));
}

bool FxParser::IsNull() const
{
    return words.Peek().IsWord("NULL") ||
           (words.Peek().kind == FxTokenKind::Number && words.Peek().text == "0");
}

bool FxParser::Object(FxParameter& parameter)
{
    if (parameter.type == D3DXPT_STRING)
        return String(parameter);
    if (parameter.IsSampler())
        return Sampler(parameter);
    if (parameter.IsShader())
        return Shader(parameter.type == D3DXPT_VERTEXSHADER, parameter.shaderVersion,
                      parameter.shader);
    if (!IsNull())
        return words.Unexpected("NULL");
    words.Next();
    return true;
}

/// Adjacent strings are concatenated.
bool FxParser::String(FxParameter& parameter)
{
    if (words.Peek().kind != FxTokenKind::String)
        return words.Unexpected("a string");
    std::string& text = parameter.storage->strings[parameter.first];
    while (words.Peek().kind == FxTokenKind::String)
        text += Unquote(words.Next().text);
    return true;
}

bool FxParser::Sampler(FxParameter& parameter)
{
    if (!words.AcceptWord("sampler_state"))
        return words.Unexpected("sampler_state");
    if (!words.Expect("{"))
        return false;
    while (!words.Accept("}")) {
        const FxToken name = words.Peek();
        const FxState* state = FxFindSamplerState(name.text);
        if (name.kind != FxTokenKind::Identifier || !state)
            return words.Fail(FxError::UnknownState,
                              "there is no state " + FxDescribe(name) + " of samplers");
        words.Next();
        FxAssignment assignment;
        if (!Assignment(*state, assignment))
            return false;
        parameter.samplerStates.push_back(std::move(assignment));
    }
    return true;
}

// ---- Shaders

/// The version token of compiled code for the profile `ahead` of the next token: `vs_1_1`,
/// `vs.1.1`, `vs_2_a`. An invalid profile counts as 1.1, as the shader is not compiled anyway.
DWORD FxParser::ShaderVersion(bool isVertex, size_t ahead) const
{
    std::string text(words.Peek(ahead).text);
    if (text.size() == 2) // the dotted form is a word and a number
        text += words.Peek(ahead + 1).text;
    const bool isTold = text.size() >= 6 && text[3] >= '1' && text[3] <= '3';
    const DWORD major = isTold ? static_cast<DWORD>(text[3] - '0') : 1;
    const bool hasMinor = isTold && text[5] >= '0' && text[5] <= '4';
    const DWORD minor = hasMinor ? static_cast<DWORD>(text[5] - '0') : 1;
    return isVertex ? D3DVS_VERSION(major, minor) : D3DPS_VERSION(major, minor);
}

hl::HlCompiler& FxParser::Compiler()
{
    if (!compiler)
        compiler = std::make_unique<hl::HlCompiler>(words.All());
    return *compiler;
}

/// A function of the text in a value. Errors in it are errors of the effect.
std::shared_ptr<const FxComputation>
FxParser::CallFunction(const FxToken& name,
                       const std::vector<FxExpressionReader::Argument>& arguments)
{
    std::string key(name.text);
    std::vector<hl::HlShape> shapes;
    for (const auto& [shape, place] : arguments) {
        key += ' ' + std::to_string(shape.type) + ' ' + std::to_string(shape.rows) + ' ' +
               std::to_string(shape.columns);
        shapes.push_back({shape.type == D3DXPT_FLOAT ? hl::HlBase::Float
                          : shape.type == D3DXPT_INT ? hl::HlBase::Int
                                                     : hl::HlBase::Bool,
                          shape.rows, shape.columns, place});
    }
    std::shared_ptr<const FxComputation>& known = functions[key];
    if (!known)
        known = CompileFunction(name, shapes);
    if (!known)
        return nullptr;
    const size_t steps = known->Steps().steps.size();
    if (steps > stepsLeft) {
        diagnostics.Fail(name.place, FxError::Limit, "the functions in values are too large");
        return nullptr;
    }
    stepsLeft -= steps;
    return known;
}

std::shared_ptr<const FxComputation>
FxParser::CompileFunction(const FxToken& name, const std::vector<hl::HlShape>& arguments)
{
    hl::HlLog log;
    auto made = Compiler().Call(name, arguments, log);
    for (const hl::HlMessage& message : log.Messages())
        if (!message.isWarning)
            diagnostics.Add(message.place, message.kind, message.text);
    if (!made)
        return nullptr;
    const auto bound = std::make_shared<FxComputation>();
    if (bound->Bind(std::move(made), model.names.parameters))
        return bound;
    diagnostics.Fail(name.place, FxError::UnknownName,
                     "the function " + FxDescribe(name) +
                         " reads a parameter that is not known here");
    return nullptr;
}

/// From behind `compile` on. What is wrong with the shader is kept in it.
bool FxParser::Compile(bool isVertex, DWORD& versionOut, std::shared_ptr<FxShader>& shaderOut)
{
    const FxToken profile = words.Peek(), function = words.Peek(1);
    shaderOut = std::make_shared<FxShader>();
    const bool isCall = profile.kind == FxTokenKind::Identifier &&
                        function.kind == FxTokenKind::Identifier && words.Peek(2).Is("(");
    if (!isCall) {
        shaderOut->fault = "a profile and a call of a function are expected";
        shaderOut->place = profile.place;
        return words.SkipValue();
    }
    const Compilation what = {profile, function, words.Position() + 2};
    CompileAs(profile.text, isVertex, what, *shaderOut);
    compiled[shaderOut.get()] = what;
    if (shaderOut->fault.empty())
        versionOut = shaderOut->words[0];
    else if (shaderOut->place.line == 0)
        shaderOut->place = profile.place;
    return words.SkipValue();
}

/// Limits and a profile that this host does not have cost the technique; what is wrong with the text is an
/// error of the effect.
void FxParser::CompileAs(std::string_view profileName, bool isVertex, const Compilation& what,
                         FxShader& shaderOut)
{
    const auto made =
        Compiler().Compile(profileName, what.profile, what.function, what.argumentsAt);
    for (const hl::HlMessage& message : made->messages)
        if (!message.isWarning && message.kind != FxError::Limit && !made->lacksProfile)
            diagnostics.Add(message.place, message.kind, message.text);
    TakeFxShader(*made, isVertex, model.names.parameters, diagnostics, rowsLeft, shaderOut);
}

/// Shaders of 3.0 draw only with one another: where one has become too large for its profile, its partner
/// follows.
void FxParser::PairShaders(FxPass& pass)
{
    const auto vertex = compiled.find(pass.vertexShader.get()),
               pixel = compiled.find(pass.pixelShader.get());
    if (vertex == compiled.end() || pixel == compiled.end() || pass.vertexShader->words.empty() ||
        pass.pixelShader->words.empty())
        return;
    const auto isThree = [](DWORD version) { return (version >> 8 & 0xFF) == 3; };
    const bool isVertexThree = isThree(pass.vertexShader->words[0]);
    if (isVertexThree == isThree(pass.pixelShader->words[0]))
        return;
    const Compilation& grown = (isVertexThree ? vertex : pixel)->second;
    if (grown.profile.text.substr(2).starts_with("_3"))
        return; // the text itself asks for the mixture
    FxShader& partner = isVertexThree ? *pass.pixelShader : *pass.vertexShader;
    const Compilation what = (isVertexThree ? pixel : vertex)->second;
    partner = FxShader();
    CompileAs(isVertexThree ? "ps_3_0" : "vs_3_0", !isVertexThree, what, partner);
    if (!partner.words.empty())
        (isVertexThree ? pass.pixelFunction : pass.vertexFunction)[0] = partner.words[0];
    KeepShaderLack(pass, what.profile, 1, &partner);
}

/// `NULL`, `compile` or `asm`. Blocks of `asm` are assembled.
bool FxParser::Shader(bool isVertex, DWORD& versionOut, std::shared_ptr<FxShader>& shaderOut)
{
    versionOut = 0;
    if (IsNull()) {
        words.Next();
        return true;
    }
    const FxToken& kind = words.Peek();
    const bool isBlock = kind.IsWord("asm");
    const bool isAssembler = isBlock || kind.IsWord("asm_fragment");
    const bool isCall = kind.IsWord("compile") || kind.IsWord("compile_fragment");
    if (!isAssembler && !isCall && !kind.IsWord("decl"))
        return words.Unexpected("NULL, compile or asm");
    if (isAssembler && !words.Peek(1).Is("{")) {
        words.Next();
        return words.Unexpected("'{'");
    }
    versionOut = ShaderVersion(isVertex, isAssembler ? 2 : 1);
    if (kind.IsWord("compile")) {
        words.Next();
        return Compile(isVertex, versionOut, shaderOut);
    }
    if (!isBlock)
        return words.SkipValue();
    words.Next();
    std::vector<FxToken> block;
    if (!words.SkipAssembler(&block))
        return false;
    shaderOut = std::make_shared<FxShader>();
    AssembleFxShader(block, isVertex, *shaderOut);
    if (!shaderOut->words.empty())
        versionOut = shaderOut->words[0];
    return words.SkipValue();
}

} // namespace headless::fx
