// Everything at the top level of an effect except techniques: types, parameters, functions.

#include <algorithm>
#include <utility>

#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/effect/FxParser.h"
#include "platform/headless/d3dx/language/HlCompiler.h"

namespace headless::fx {

FxParser::FxParser(std::vector<FxToken> text, FxDiagnostics& log, EffectPool* effectPool,
                   FxModel& target)
    : diagnostics(log),
      pool(effectPool),
      model(target),
      words(std::move(text), log),
      expressions(words, target.names)
{}

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
    if (!model.names.FindDeclaredType(word.text, element) || element.kind != D3DXPC_SCALAR)
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
    if (isInStruct) {
        NestedStruct(typeOut);
        return words.Is("{") ? words.SkipBrackets("{", "}") : words.Unexpected("'{'");
    }
    if (isNamed)
        words.Next();
    FxStruct& structure = *model.names.structs.emplace_back(std::make_unique<FxStruct>());
    typeOut = {D3DXPC_STRUCT, D3DXPT_VOID, 0, 0, &structure, true};
    isInStruct = true;
    const bool isRead = Members(structure);
    isInStruct = false;
    typeOut.isModelled = structure.isModelled;
    if (!isRead)
        return false;
    if (isNamed)
        model.names.types.emplace(name.text, typeOut);
    return true;
}

/// UNMODELLED: a struct declared inside a struct; so this never recurses. Leaves the body to the
/// caller, but records the struct's name and those declared in it.
void FxParser::NestedStruct(FxType& typeOut)
{
    typeOut = FxType::Unmodelled();
    if (!words.Is("{"))
        model.names.types.emplace(words.Next().text, typeOut);
    size_t depth = 0;
    for (size_t ahead = 0; words.Peek(ahead).kind != FxTokenKind::End; ++ahead) {
        depth += words.Peek(ahead).Is("{") ? 1 : 0;
        if (words.Peek(ahead).Is("}") && --depth == 0)
            return;
        const bool isNamed = words.Peek(ahead).Is("struct") && words.Peek(ahead + 2).Is("{");
        if (isNamed && words.Peek(ahead + 1).kind == FxTokenKind::Identifier)
            model.names.types.emplace(words.Peek(ahead + 1).text, typeOut);
    }
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
        do {
            FxMember member;
            member.type = declaration.type;
            const FxPlace place = words.Peek().place;
            bool isModelled = member.type.isModelled;
            if (!words.ExpectName(member.name) || !Elements(member.elements, isModelled))
                return false;
            structure.isModelled = structure.isModelled && isModelled;
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
    UINT elements = 0;
    FxType& type = declaration.type;
    if (!words.ExpectName(name) || !Elements(elements, type.isModelled))
        return false;
    type.isModelled = type.isModelled && elements == 0; // UNMODELLED: names of arrays
    if (!model.names.types.emplace(name, type).second)
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

/// Only shaders use functions: the body is skipped.
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

/// UNMODELLED: arrays of arrays. All their sizes are read.
bool FxParser::Elements(UINT& elementsOut, bool& isModelledInOut)
{
    elementsOut = 0;
    if (!words.Accept("["))
        return true;
    const FxPlace place = words.Peek().place;
    int32_t count = 0;
    if (!expressions.ReadConstant(count) || !words.Expect("]"))
        return false;
    if (count < 1 || static_cast<size_t>(count) > kFxMaxElements)
        return words.FailAt(place, FxError::BadIndex,
                            "an array cannot have " + std::to_string(count) + " elements");
    elementsOut = static_cast<UINT>(count);
    while (words.Accept("[")) {
        isModelledInOut = false;
        if (!expressions.ReadConstant(count) || !words.Expect("]"))
            return false;
    }
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
    UINT elements = 0;
    bool isModelled = declaration.type.isModelled;
    if (declaration.type.IsVoid())
        return words.FailAt(name.place, FxError::UnknownType, "a parameter cannot be void");
    if (model.names.parameters.contains(name.text) || model.names.unmodelled.contains(name.text))
        return words.FailAt(name.place, FxError::Redefinition,
                            "there is a parameter " + FxDescribe(name) + " already");
    if (!Elements(elements, isModelled))
        return false;
    // A parameter that this host cannot store is read as a number, to get past the text after it.
    std::unique_ptr<FxParameter> made =
        isModelled ? Make(declaration.type, elements, name.place) : Make({}, 0, name.place);
    if (!made)
        return false;
    FxParameter& parameter = *made;
    parameter.name = name.text;
    parameter.flags = declaration.flags;
    if (declaration.isColumnMajor && parameter.kind == D3DXPC_MATRIX_ROWS)
        parameter.kind = D3DXPC_MATRIX_COLUMNS;
    while (words.Is(":"))
        if (!Semantic(parameter.semantic, parameter.hasSemantic))
            return false;
    if (words.Is("<") && !Annotations(parameter.annotations))
        return false;
    if (words.Accept("=")) {
        isModelled = isModelled && !ReadsUnmodelled(parameter);
        if (!(isModelled ? Value(parameter) : words.SkipValue()))
            return false;
    }
    if (!isModelled) {
        model.names.unmodelled.emplace(name.text);
        return true;
    }
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
    UINT elements = 0;
    bool isModelled = declaration.type.isModelled;
    if (!words.ExpectName(text) || !Elements(elements, isModelled))
        return false;
    if (!isModelled) // its value cannot be used
        return words.Expect("=") && words.SkipValue() && words.Expect(";");
    const bool isPossible = declaration.type.IsNumeric() || declaration.type.type == D3DXPT_STRING;
    if (!isPossible)
        return words.FailAt(name.place, FxError::UnknownType,
                            "an annotation is a number or a string");
    if (FxFindByName(annotationsOut, text))
        return words.FailAt(name.place, FxError::Redefinition,
                            "there is an annotation '" + text + "' already");
    std::unique_ptr<FxParameter> annotation = Make(declaration.type, elements, name.place);
    if (!annotation)
        return false;
    annotation->name = text;
    annotation->flags = D3DX_PARAMETER_ANNOTATION;
    for (const auto& element : annotation->parts)
        element->name = text;
    if (!words.Expect("=") || !Value(*annotation) || !words.Expect(";"))
        return false;
    annotationsOut.push_back(std::move(annotation));
    return true;
}

} // namespace headless::fx
