// Everything at the top level of an effect except techniques: types, parameters, functions.

#include <algorithm>
#include <utility>

#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/effect/FxParser.h"
#include "platform/headless/d3dx/language/HlCompiler.h"

namespace headless::fx {

namespace {

constexpr const char* kNoLength = "an array without a length needs an initial value";

} // namespace

FxParser::FxParser(std::vector<FxToken> text, FxDiagnostics& log, EffectPool* effectPool,
                   FxModel& target)
    : diagnostics(log),
      pool(effectPool),
      model(target),
      words(std::move(text), log),
      expressions(words, target.names)
{
    expressions.SetCaller(
        [this](const FxToken& name, const std::vector<FxExpressionReader::Argument>& arguments) {
            return CallFunction(name, arguments);
        });
}

FxParser::~FxParser() = default;

bool FxParser::Run()
{
    while (!words.AtEnd())
        if (!TopLevel())
            return false;
    return !diagnostics.Failed();
}

bool FxParser::TopLevel()
{
    if (words.Accept(";"))
        return true;
    if (words.AcceptWord("technique"))
        return Technique();
    if (words.Accept("typedef"))
        return TypeDefinition();
    return Variables();
}

// ---- Types

bool FxParser::Modifiers(Declaration& declarationOut)
{
    static constexpr struct {
        std::string_view word;
        DWORD flag;
    } kModifiers[] = {
        {"shared", D3DX_PARAMETER_SHARED},
        {"const", D3DX_PARAMETER_LITERAL},
        {"static", 0},
        {"uniform", 0},
        {"extern", 0},
        {"volatile", 0},
        {"inline", 0},
        {"row_major", 0},
        {"column_major", 0},
        {"unsigned", 0},
    };
    for (bool isModifier = true; isModifier;) {
        isModifier = false;
        for (const auto& modifier : kModifiers) {
            if (!words.Accept(modifier.word))
                continue;
            isModifier = true;
            declarationOut.flags |= modifier.flag;
            declarationOut.isStatic |= modifier.word == "static";
            declarationOut.isColumnMajor |= modifier.word == "column_major";
        }
    }
    return Type(declarationOut.type);
}

bool FxParser::Type(FxType& typeOut)
{
    const FxToken word = words.Peek();
    if (words.Accept("struct"))
        return Struct(typeOut);
    if (word.kind != FxTokenKind::Identifier)
        return words.Unexpected("a declaration");
    if (!model.names.FindDeclaredType(word.text, typeOut))
        return words.Fail(FxError::UnknownType, "there is no type " + FxDescribe(word));
    words.Next();
    const bool isTemplate = (word.Is("vector") || word.Is("matrix")) && words.Is("<");
    return !isTemplate || TemplateType(word.Is("matrix"), typeOut);
}

/// `vector<float, 3>`, `matrix<float, 4, 4>`.
bool FxParser::TemplateType(bool isMatrix, FxType& typeOut)
{
    words.Next();
    const FxToken word = words.Next();
    FxType element;
    if (!model.names.FindDeclaredType(word.text, element) || element.kind != D3DXPC_SCALAR ||
        !element.lengths.empty())
        return words.FailAt(word.place, FxError::UnknownType,
                            FxDescribe(word) + " is no type of a number");
    UINT extents[2] = {1, 1};
    for (int i = isMatrix ? 0 : 1; i < 2; ++i) {
        if (!words.Expect(","))
            return false;
        const FxToken extent = words.Next();
        FxNumber number;
        if (extent.kind != FxTokenKind::Number || !FxParseNumber(extent.text, number) ||
            number.Int(0) < 1 || number.Int(0) > 4)
            return words.FailAt(extent.place, FxError::BadIndex, "1 to 4 is expected");
        extents[i] = static_cast<UINT>(number.Int(0));
    }
    typeOut = FxType::Of(element.type, extents[0], extents[1], isMatrix);
    typeOut.isModelled = element.isModelled;
    return words.AcceptClosingAngle() || words.Unexpected("'>'");
}

bool FxParser::Struct(FxType& typeOut)
{
    const FxToken name = words.Peek();
    if (name.kind == FxTokenKind::Identifier && !words.Peek(1).Is("{")) {
        words.Next();
        return model.names.FindDeclaredType(name.text, typeOut) ||
               words.FailAt(name.place, FxError::UnknownType,
                            "there is no type " + FxDescribe(name));
    }
    const bool isNamed = name.kind == FxTokenKind::Identifier;
    if (isNamed && model.names.types.contains(name.text))
        return words.Fail(FxError::Redefinition,
                          "there is a type " + FxDescribe(name) + " already");
    if (structDepth == kFxMaxStructDepth)
        return words.Fail(FxError::Limit, "the structs are nested too deeply");
    if (isNamed)
        words.Next();
    // An inner struct that is never closed is told where it begins.
    const size_t body = words.Position();
    if (structDepth > 0 && words.Is("{") && !words.SkipBrackets("{", "}"))
        return false;
    words.Seek(body);
    FxStruct& structure = *model.names.structs.emplace_back(std::make_unique<FxStruct>());
    typeOut = {D3DXPC_STRUCT, D3DXPT_VOID, 0, 0, &structure, true, {}};
    ++structDepth;
    const bool isRead = Members(structure);
    --structDepth;
    typeOut.isModelled = structure.isModelled;
    if (!isRead)
        return false;
    if (isNamed && !model.names.types.emplace(name.text, typeOut).second)
        return words.FailAt(name.place, FxError::Redefinition,
                            "there is a type " + FxDescribe(name) + " already");
    return true;
}

bool FxParser::Members(FxStruct& structure)
{
    if (!words.Expect("{"))
        return false;
    while (!words.Accept("}")) {
        Declaration declaration;
        // Interpolation modifiers only matter to shaders.
        while (words.Accept("centroid") || words.Accept("linear") ||
               words.Accept("nointerpolation"))
            continue;
        if (!Modifiers(declaration))
            return false;
        if (declaration.type.kind == D3DXPC_STRUCT && words.Accept(";"))
            continue; // a type that is used further on
        do {
            FxMember member;
            member.type = declaration.type;
            const FxPlace place = words.Peek().place;
            if (!words.ExpectName(member.name) || !Lengths(member.type))
                return false;
            if (member.type.HasUnstatedLength())
                return words.FailAt(place, FxError::BadIndex, kNoLength);
            member.elements = member.type.Elements();
            structure.isModelled = structure.isModelled && member.type.isModelled;
            while (words.Is(":"))
                if (!Semantic(member.semantic, member.hasSemantic))
                    return false;
            if (!AddMember(structure, std::move(member), place))
                return false;
        } while (words.Accept(","));
        if (!words.Expect(";"))
            return false;
    }
    return true;
}

bool FxParser::AddMember(FxStruct& structure, FxMember member, FxPlace place)
{
    for (const FxMember& other : structure.members)
        if (other.name == member.name)
            return words.FailAt(place, FxError::Redefinition,
                                "the struct has a member '" + member.name + "' already");
    if (member.type.IsVoid())
        return words.FailAt(place, FxError::UnknownType, "a member cannot be void");
    return structure.Add(std::move(member)) ||
           words.FailAt(place, FxError::Limit, "the struct becomes too large");
}

bool FxParser::TypeDefinition()
{
    Declaration declaration;
    std::string name;
    if (!Modifiers(declaration))
        return false;
    const FxPlace place = words.Peek().place;
    if (!words.ExpectName(name) || !Lengths(declaration.type))
        return false;
    if (declaration.type.HasUnstatedLength())
        return words.FailAt(place, FxError::BadIndex, kNoLength);
    if (!model.names.types.emplace(name, declaration.type).second)
        return words.FailAt(place, FxError::Redefinition, "there is a type '" + name + "' already");
    return words.Expect(";");
}

// ---- Parameters and functions

bool FxParser::Variables()
{
    Declaration declaration;
    if (!Modifiers(declaration))
        return false;
    if (declaration.type.kind == D3DXPC_STRUCT && words.Accept(";"))
        return true;
    const FxToken first = words.Peek();
    std::string name;
    if (!words.ExpectName(name))
        return false;
    if (words.Is("("))
        return Function(first);
    if (!Variable(declaration, first))
        return false;
    while (words.Accept(",")) {
        const FxToken next = words.Peek();
        if (!words.ExpectName(name) || !Variable(declaration, next))
            return false;
    }
    return words.Expect(";");
}

/// The body is read when a shader or a value calls the function.
bool FxParser::Function(const FxToken& name)
{
    if (!words.SkipBrackets("(", ")"))
        return false;
    std::string semantic;
    bool hasSemantic = false;
    if (words.Is(":") && !Semantic(semantic, hasSemantic))
        return false;
    model.names.functions.emplace(name.text);
    if (words.Accept(";"))
        return true;
    return words.Is("{") ? words.SkipBrackets("{", "}") : words.Unexpected("'{'");
}

/// `[2][3]`: two arrays of three, or of what the type itself is an array of. An empty first length is 0
/// until the initial value tells it.
bool FxParser::Lengths(FxType& typeInOut)
{
    std::vector<UINT> lengths;
    size_t elements = typeInOut.lengths.empty() ? 1 : typeInOut.Elements();
    for (FxPlace place = words.Peek(1).place; words.Accept("["); place = words.Peek(1).place) {
        if (lengths.empty() && words.Accept("]")) {
            lengths.push_back(0);
            continue;
        }
        int32_t count = 0;
        if (!expressions.ReadConstant(count) || !words.Expect("]"))
            return false;
        if (count >= 1)
            elements *= static_cast<size_t>(count);
        if (count < 1 || elements > kFxMaxElements)
            return words.FailAt(place, FxError::BadIndex,
                                "an array cannot have " +
                                    (count < 1 ? std::to_string(count) : std::to_string(elements)) +
                                    " elements");
        lengths.push_back(static_cast<UINT>(count));
    }
    typeInOut.lengths.insert(typeInOut.lengths.begin(), lengths.begin(), lengths.end());
    return true;
}

/// The parameter becomes as long as its initial value, which is read next.
bool FxParser::StateLength(FxType& typeInOut, std::unique_ptr<FxParameter>& parameterInOut)
{
    const FxPlace place = words.Peek().place;
    const size_t begin = words.Position(), inner = parameterInOut->elements;
    size_t count = 0;
    if (!CountValues(*parameterInOut, count))
        return false;
    words.Seek(begin);
    if (count == 0 || count > kFxMaxElements)
        return words.FailAt(place, FxError::BadIndex,
                            "an array cannot have " + std::to_string(count) + " elements");
    typeInOut.lengths[0] = static_cast<UINT>(count);
    if (count * inner > kFxMaxElements)
        return words.FailAt(place, FxError::Limit, "the array is too large");
    std::unique_ptr<FxParameter> grown = Make(typeInOut, place);
    if (!grown)
        return false;
    FxParameter& old = *parameterInOut;
    grown->name = std::move(old.name);
    grown->flags = old.flags;
    grown->kind = old.kind;
    grown->semantic = std::move(old.semantic);
    grown->hasSemantic = old.hasSemantic;
    grown->annotations = std::move(old.annotations);
    parameterInOut = std::move(grown);
    return true;
}

/// Also `: register(c0)` and `: packoffset(c0)`, which only matter to shaders.
bool FxParser::Semantic(std::string& semanticOut, bool& hasSemanticOut)
{
    words.Next();
    if ((words.Is("register") || words.Is("packoffset")) && words.Peek(1).Is("(")) {
        words.Next();
        return words.SkipBrackets("(", ")");
    }
    hasSemanticOut = true;
    return words.ExpectName(semanticOut);
}

bool FxParser::Variable(const Declaration& declaration, const FxToken& name)
{
    FxType type = declaration.type;
    bool isModelled = type.isModelled;
    if (declaration.type.IsVoid())
        return words.FailAt(name.place, FxError::UnknownType, "a parameter cannot be void");
    if (model.names.parameters.contains(name.text) || model.names.unmodelled.contains(name.text))
        return words.FailAt(name.place, FxError::Redefinition,
                            "there is a parameter " + FxDescribe(name) + " already");
    if (!Lengths(type))
        return false;
    const bool isUnstated = type.HasUnstatedLength();
    if (isUnstated)
        type.lengths[0] = 1;
    // A parameter that this host cannot store is read as a number, to get past the text after it.
    std::unique_ptr<FxParameter> made = Make(isModelled ? type : FxType(), name.place);
    if (!made || !Head(declaration, name, *made))
        return false;
    if (isUnstated && isModelled && !words.Is("="))
        return words.FailAt(name.place, FxError::BadIndex, kNoLength);
    if (words.Accept("=")) {
        isModelled = isModelled && !ReadsUnmodelled(*made);
        if (isModelled && isUnstated && !StateLength(type, made))
            return false;
        if (!(isModelled ? Value(*made) : words.SkipValue()))
            return false;
    }
    if (!isModelled) {
        model.names.unmodelled.emplace(name.text);
        return true;
    }
    return Keep(declaration, name, std::move(made));
}

/// What stands between a parameter's name and its initial value.
bool FxParser::Head(const Declaration& declaration, const FxToken& name, FxParameter& parameter)
{
    parameter.name = name.text;
    parameter.flags = declaration.flags;
    if (declaration.isColumnMajor && parameter.kind == D3DXPC_MATRIX_ROWS)
        parameter.kind = D3DXPC_MATRIX_COLUMNS;
    while (words.Is(":"))
        if (!Semantic(parameter.semantic, parameter.hasSemantic))
            return false;
    return !words.Is("<") || Annotations(parameter.annotations);
}

bool FxParser::Keep(const Declaration& declaration, const FxToken& name,
                    std::unique_ptr<FxParameter> made)
{
    FxParameter& parameter = *made;
    for (const auto& element : parameter.parts) {
        if (!parameter.IsArray())
            break;
        element->name = parameter.name;
        element->semantic = parameter.semantic;
        element->hasSemantic = parameter.hasSemantic;
        element->kind = parameter.kind;
    }
    const bool isShared = (parameter.flags & D3DX_PARAMETER_SHARED) != 0 && !declaration.isStatic;
    if (isShared && pool && !pool->Share(parameter))
        return words.FailAt(name.place, FxError::SharedMismatch,
                            "another effect of the pool shares " + FxDescribe(name) +
                                " as another type");
    model.names.parameters.emplace(name.text, &parameter);
    (declaration.isStatic ? model.constants : model.parameters).push_back(std::move(made));
    return true;
}

bool FxParser::Annotations(List& annotationsOut)
{
    words.Next();
    while (!words.AcceptClosingAngle())
        if (!Annotation(annotationsOut))
            return false;
    return true;
}

bool FxParser::Annotation(List& annotationsOut)
{
    Declaration declaration;
    if (words.Is("struct") || !Modifiers(declaration))
        return words.Unexpected("an annotation");
    const FxToken name = words.Peek();
    std::string text;
    FxType& type = declaration.type;
    if (!words.ExpectName(text) || !Lengths(type))
        return false;
    if (!type.isModelled) // its value cannot be used
        return words.Expect("=") && words.SkipValue() && words.Expect(";");
    const bool isPossible = type.IsNumeric() || type.type == D3DXPT_STRING;
    if (!isPossible)
        return words.FailAt(name.place, FxError::UnknownType,
                            "an annotation is a number or a string");
    if (FxFindByName(annotationsOut, text))
        return words.FailAt(name.place, FxError::Redefinition,
                            "there is an annotation '" + text + "' already");
    const bool isUnstated = type.HasUnstatedLength();
    if (isUnstated)
        type.lengths[0] = 1;
    std::unique_ptr<FxParameter> annotation = Make(type, name.place);
    if (!annotation || !words.Expect("="))
        return false;
    if (isUnstated && !StateLength(type, annotation))
        return false;
    annotation->name = text;
    annotation->flags = D3DX_PARAMETER_ANNOTATION;
    for (const auto& element : annotation->parts)
        element->name = text;
    if (!Value(*annotation) || !words.Expect(";"))
        return false;
    annotationsOut.push_back(std::move(annotation));
    return true;
}

} // namespace headless::fx
