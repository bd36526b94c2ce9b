// Types, structs, global variables and heads of functions.

#include "platform/headless/d3dx/effect/FxNumber.h"
#include "platform/headless/d3dx/language/HlParser.h"

#include <charconv>

namespace headless::hl {

namespace {

constexpr std::string_view kOtherBlocks[] = {"technique", "Technique", "TECHNIQUE"};

} // namespace

bool HlParser::TopLevel()
{
    if (Accept(";"))
        return true;
    for (const std::string_view word : kOtherBlocks)
        if (Is(word))
            return false;
    if (Is("#")) {
        ++position;
        return true;
    }
    if (Accept("typedef"))
        return TypeDefinition();
    Modifiers modifiers;
    const HlType* type = nullptr;
    if (!ReadModifiers(modifiers) || !Type(type, modifiers))
        return false;
    if (Accept(";"))
        return true;
    if (Peek(1).Is("("))
        return Function(*type);
    return Declarators(*type, modifiers);
}

bool HlParser::TypeDefinition()
{
    Modifiers modifiers;
    const HlType* type = nullptr;
    if (!ReadModifiers(modifiers) || !Type(type, modifiers))
        return false;
    const FxToken name = Peek();
    if (name.kind != fx::FxTokenKind::Identifier)
        return Unexpected("a name");
    ++position;
    if (!ArrayLengths(type))
        return false;
    unit.typeNames[name.text] = type;
    return Expect(";");
}

// ---- Types

bool HlParser::ReadModifiers(Modifiers& modifiersOut)
{
    for (;; ++position) {
        if (Is("static"))
            modifiersOut.isStatic = true;
        else if (Is("const"))
            modifiersOut.isConst = true;
        else if (Is("uniform"))
            modifiersOut.isUniform = true;
        else if (Is("in"))
            modifiersOut.isIn = true;
        else if (Is("out"))
            modifiersOut.isOut = true;
        else if (Is("inout"))
            modifiersOut.isIn = modifiersOut.isOut = true;
        else if (Is("row_major"))
            modifiersOut.order = 1;
        else if (Is("column_major"))
            modifiersOut.order = 2;
        else if (!Is("extern") && !Is("shared") && !Is("volatile") && !Is("inline") &&
                 !Is("centroid") && !Is("unsigned") && !Is("precise") && !Is("linear") &&
                 !Is("nointerpolation"))
            return true;
    }
}

const HlType* HlParser::FindType(std::string_view name) const
{
    const auto found = unit.typeNames.find(name);
    return found != unit.typeNames.end() ? found->second : unit.types.Find(name);
}

bool HlParser::AtType(size_t ahead) const
{
    const FxToken& word = Peek(ahead);
    return word.kind == fx::FxTokenKind::Identifier &&
           (word.Is("struct") || FindType(word.text) != nullptr);
}

const HlType* HlParser::Ordered(const HlType& type, const Modifiers& modifiers) const
{
    if (!type.IsMatrix())
        return &type;
    const bool isColumns =
        modifiers.order == 0 ? type.isColumnMajor && !Peek().packsRows : modifiers.order == 2;
    return unit.types.Number(type.base, type.form, type.rows, type.columns, isColumns);
}

bool HlParser::Type(const HlType*& typeOut, const Modifiers& modifiers)
{
    const FxToken word = Peek();
    if (Accept("struct")) {
        if (!Struct(typeOut))
            return false;
    } else {
        typeOut = word.kind == fx::FxTokenKind::Identifier ? FindType(word.text) : nullptr;
        if (!typeOut)
            return Unexpected("a type");
        ++position;
        const bool isTemplate = (word.Is("vector") || word.Is("matrix")) && Is("<");
        if (isTemplate && !TemplateType(word.Is("matrix"), typeOut))
            return false;
    }
    typeOut = Ordered(*typeOut, modifiers);
    return true;
}

/// `vector<float, 3>`, `matrix<float, 4, 4>`.
bool HlParser::TemplateType(bool isMatrix, const HlType*& typeOut)
{
    ++position;
    const HlType* const element = FindType(Peek().text);
    if (!element || !element->IsScalar())
        return Unexpected("a type of numbers");
    ++position;
    unsigned extents[2] = {1, 1};
    for (int i = isMatrix ? 0 : 1; i < 2; ++i) {
        if (!Expect(","))
            return false;
        const std::string_view text = Peek().text;
        if (text.size() != 1 || text[0] < '1' || text[0] > '4')
            return Unexpected("1 to 4");
        extents[i] = static_cast<unsigned>(text[0] - '0');
        ++position;
    }
    typeOut = unit.types.Number(element->base, isMatrix ? HlForm::Matrix : HlForm::Vector,
                                extents[0], extents[1]);
    return Expect(">");
}

bool HlParser::Struct(const HlType*& typeOut)
{
    const FxToken name = Peek();
    const bool isNamed = name.kind == fx::FxTokenKind::Identifier;
    position += isNamed ? 1 : 0;
    if (!Is("{")) {
        typeOut = isNamed ? FindType(name.text) : nullptr;
        return typeOut || Unexpected("'{'");
    }
    if (++nesting > kHlMaxTypeDepth)
        return Fail(name.place, FxError::Limit, "the structs are nested too deep");
    HlStruct& structure = unit.types.NewStruct();
    structure.name = isNamed ? name.text : std::string_view();
    if (!Members(structure))
        return false;
    --nesting;
    typeOut = unit.types.Struct(structure);
    if (!typeOut)
        return Fail(name.place, FxError::Limit, "the struct is too large");
    if (isNamed)
        unit.typeNames[name.text] = typeOut;
    return true;
}

bool HlParser::Members(HlStruct& structure)
{
    if (!Expect("{"))
        return false;
    uint32_t first = 0;
    while (!Accept("}")) {
        Modifiers modifiers;
        const HlType* type = nullptr;
        if (!ReadModifiers(modifiers) || !Type(type, modifiers))
            return false;
        do {
            HlVariable member;
            member.type = type;
            member.name = Peek().text;
            if (Peek().kind != fx::FxTokenKind::Identifier)
                return Unexpected("a name");
            ++position;
            if (!ArrayLengths(member.type) || !Semantics(member))
                return false;
            if (structure.Find(member.name))
                return Fail(Peek().place, FxError::Redefinition,
                            "the struct has this member already");
            structure.members.push_back({member.name, member.type, member.semantic, first});
            first += member.type->cells;
            if (first > kHlMaxCells)
                return Fail(Peek().place, FxError::Limit, "the struct is too large");
        } while (Accept(","));
        if (!Expect(";"))
            return false;
    }
    return true;
}

/// `[2][3]`: an array of two arrays of three. An empty length is told by the initial value.
bool HlParser::ArrayLengths(const HlType*& typeInOut)
{
    std::vector<int> lengths;
    const FxPlace place = Peek().place;
    while (Accept("[")) {
        int length = 0;
        if (!Is("]")) {
            const HlExpression* const expression = Conditional();
            if (!expression)
                return false;
            if (!WholeNumber(*expression, length) || length < 1)
                return Fail(expression->place, FxError::BadIndex,
                            "the length of an array is a whole number of at least 1");
        }
        lengths.push_back(length);
        if (!Expect("]"))
            return false;
    }
    for (size_t i = lengths.size(); i-- > 0;) {
        if (static_cast<uint32_t>(lengths[i]) > kHlMaxCells ||
            !(typeInOut = unit.types.Array(*typeInOut, static_cast<uint32_t>(lengths[i]))))
            return Fail(place, FxError::Limit, "the array is too large");
    }
    return true;
}

/// Whole numbers that the text itself tells, with constants by name.
bool HlParser::WholeNumber(const HlExpression& expression, int& valueOut) const
{
    int a = 0, b = 0;
    switch (expression.kind) {
    case HlExpressionKind::Number:
        valueOut = expression.number >= 0.0f && expression.number < 1e9f
                       ? static_cast<int>(expression.number)
                       : 0;
        return true;
    case HlExpressionKind::Name: {
        const auto found = unit.globals.find(expression.name);
        return found != unit.globals.end() && found->second->isConst && found->second->value &&
               found->second->value->depth < expression.depth + 8 &&
               found->second->value != &expression && WholeNumber(*found->second->value, valueOut);
    }
    case HlExpressionKind::Cast:
        return WholeNumber(*expression.parts[0], valueOut);
    case HlExpressionKind::Binary:
        break;
    default:
        return false;
    }
    if (!WholeNumber(*expression.parts[0], a) || !WholeNumber(*expression.parts[1], b))
        return false;
    const int64_t wide = expression.op == HlOperator::Add                ? int64_t{a} + b
                         : expression.op == HlOperator::Subtract         ? int64_t{a} - b
                         : expression.op == HlOperator::Multiply         ? int64_t{a} * b
                         : expression.op == HlOperator::Divide && b != 0 ? a / b
                                                                         : -1;
    if (wide < 0 || wide > 1000000000)
        return false;
    valueOut = static_cast<int>(wide);
    return true;
}

// ---- Variables and functions

/// `: POSITION`, `: register(c4)`, `: packoffset(c0)`, several one after the other.
bool HlParser::Semantics(HlVariable& variable)
{
    while (Accept(":")) {
        const FxToken word = Peek();
        if (word.kind != fx::FxTokenKind::Identifier)
            return Unexpected("a semantic");
        ++position;
        if (!Is("(")) {
            variable.semantic = word.text;
            continue;
        }
        std::string_view text = Peek(1).text;
        if (Peek(2).Is(",")) // register(vs_2_0, c4)
            text = Peek(3).text;
        if (word.Is("register") && text.size() > 1) {
            variable.registerKind = text[0];
            std::from_chars(text.data() + 1, text.data() + text.size(), variable.registerNumber);
        }
        if (!SkipBrackets("(", ")"))
            return Unexpected("')'");
    }
    return true;
}

/// To the `,` or `;` behind a value of any kind.
void HlParser::SkipValue()
{
    for (size_t depth = 0; position < end && (depth > 0 || (!Is(",") && !Is(";"))); ++position) {
        depth += Is("{") || Is("(") ? 1 : 0;
        depth -= depth > 0 && (Is("}") || Is(")")) ? 1 : 0;
    }
}

/// A name with its lengths and semantics; null after an error.
HlVariable* HlParser::Declared(const HlType& type, const Modifiers& modifiers)
{
    const FxToken name = Peek();
    if (name.kind != fx::FxTokenKind::Identifier) {
        Unexpected("a name");
        return nullptr;
    }
    ++position;
    HlVariable& variable = unit.variables.emplace_back();
    variable.name = name.text;
    variable.place = name.place;
    variable.type = &type;
    variable.isStatic = modifiers.isStatic;
    variable.isConst = modifiers.isConst;
    return ArrayLengths(variable.type) && Semantics(variable) ? &variable : nullptr;
}

bool HlParser::Declarators(const HlType& type, const Modifiers& modifiers)
{
    do {
        HlVariable* const variable = Declared(type, modifiers);
        if (!variable)
            return false;
        if (Is("<")) // annotations end in `;` before their bracket
            while (position < end && !(Accept(">") && words[position - 2].Is(";")) &&
                   !(Is("<") && Peek(1).Is(">")))
                ++position;
        unit.globals.emplace(variable->name, variable);
        unit.globalList.push_back(variable);
        if (!Accept("="))
            continue;
        if (type.kind == HlKind::Sampler || type.kind == HlKind::Object) {
            SkipValue(); // the effect reads it; only the name matters here
            continue;
        }
        variable->value = Initializer();
        if (!variable->value)
            return false;
    } while (Accept(","));
    return Expect(";");
}

bool HlParser::Function(const HlType& result)
{
    HlFunction& function = unit.functions.emplace_back();
    function.name = Peek().text;
    function.place = Peek().place;
    function.result = &result;
    position += 2;
    if (Is("void") && Peek(1).Is(")"))
        ++position;
    while (!Accept(")")) {
        if (!Parameter(function))
            return false;
        if (!Accept(",") && !Is(")"))
            return Unexpected("')'");
    }
    HlVariable ending;
    if (!Semantics(ending))
        return false;
    function.semantic = ending.semantic;
    if (Accept(";"))
        return true; // its body follows elsewhere
    function.bodyBegin = position;
    if (!Is("{") || !SkipBrackets("{", "}"))
        return false;
    function.bodyEnd = position;
    unit.functionsByName[function.name].push_back(&function);
    return true;
}

bool HlParser::Parameter(HlFunction& function)
{
    Modifiers modifiers;
    HlVariable& parameter = unit.variables.emplace_back();
    if (!ReadModifiers(modifiers) || !Type(parameter.type, modifiers) || !ReadModifiers(modifiers))
        return false;
    parameter.name = Peek().text;
    parameter.place = Peek().place;
    if (Peek().kind == fx::FxTokenKind::Identifier)
        ++position;
    parameter.isUniform = modifiers.isUniform;
    parameter.isConst = modifiers.isConst;
    parameter.isOut = modifiers.isOut;
    parameter.isIn = modifiers.isIn || !modifiers.isOut;
    if (!ArrayLengths(parameter.type) || !Semantics(parameter))
        return false;
    if (Accept("=") && !(parameter.value = Assignment()))
        return false;
    function.parameters.push_back(&parameter);
    return true;
}

} // namespace headless::hl
