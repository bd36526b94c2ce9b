// Statements.

#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/language/HlParser.h"

namespace headless::hl {

HlStatement* HlParser::NewStatement(HlStatementKind kind)
{
    HlStatement& statement = unit.statements.emplace_back();
    statement.kind = kind;
    statement.place = Peek().place;
    return &statement;
}

/// `[unroll]`, `[unroll(4)]`, `[loop]`, `[branch]`, `[flatten]`.
bool HlParser::Attribute(HlHint& hintOut)
{
    static constexpr struct {
        std::string_view word;
        HlHint hint;
    } kHints[] = {{"unroll", HlHint::Unroll},
                  {"loop", HlHint::Loop},
                  {"branch", HlHint::Branch},
                  {"flatten", HlHint::Flatten},
                  {"fastopt", HlHint::None}};
    ++position;
    for (const auto& row : kHints) {
        if (!Is(row.word))
            continue;
        hintOut = row.hint;
        ++position;
        if (Is("(") && !SkipBrackets("(", ")"))
            return Unexpected("')'");
        return Expect("]");
    }
    return Unexpected("unroll, loop, branch or flatten");
}

HlStatement* HlParser::Statement()
{
    HlHint hint = HlHint::None;
    while (Is("["))
        if (!Attribute(hint))
            return nullptr;
    if (++nesting > fx::kFxMaxNesting) {
        Fail(Peek().place, FxError::Limit, "the statements are nested too deep");
        return nullptr;
    }
    HlStatement* const statement = Is("{")        ? Block()
                                   : Is("if")     ? If()
                                   : Is("for")    ? For()
                                   : Is("while")  ? While()
                                   : Is("do")     ? Do()
                                   : Is("switch") ? Switch(hint)
                                                  : Simple();
    --nesting;
    if (statement)
        statement->hint = hint;
    return statement;
}

HlStatement* HlParser::Block()
{
    HlStatement* const block = NewStatement(HlStatementKind::Block);
    if (!Expect("{"))
        return nullptr;
    while (!Accept("}")) {
        HlStatement* const statement = Statement();
        if (!statement)
            return nullptr;
        block->list.push_back(statement);
    }
    return block;
}

HlStatement* HlParser::If()
{
    HlStatement* const statement = NewStatement(HlStatementKind::If);
    ++position;
    if (!Expect("(") || !(statement->condition = Expression()) || !Expect(")") ||
        !(statement->first = Statement()))
        return nullptr;
    if (Accept("else") && !(statement->second = Statement()))
        return nullptr;
    return statement;
}

HlStatement* HlParser::For()
{
    HlStatement* const statement = NewStatement(HlStatementKind::For);
    ++position;
    if (!Expect("("))
        return nullptr;
    if (!Accept(";") && !(statement->first = Simple()))
        return nullptr;
    if (!Is(";") && !(statement->condition = Expression()))
        return nullptr;
    if (!Expect(";"))
        return nullptr;
    if (!Is(")") && !(statement->step = Expression()))
        return nullptr;
    return Expect(")") && (statement->second = Statement()) ? statement : nullptr;
}

HlStatement* HlParser::While()
{
    HlStatement* const statement = NewStatement(HlStatementKind::While);
    ++position;
    return Expect("(") && (statement->condition = Expression()) && Expect(")") &&
                   (statement->second = Statement())
               ? statement
               : nullptr;
}

HlStatement* HlParser::Do()
{
    HlStatement* const statement = NewStatement(HlStatementKind::Do);
    ++position;
    return (statement->second = Statement()) && Expect("while") && Expect("(") &&
                   (statement->condition = Expression()) && Expect(")") && Expect(";")
               ? statement
               : nullptr;
}

/// A declaration, an expression or a jump, with its `;`.
HlStatement* HlParser::Simple()
{
    static constexpr struct {
        std::string_view word;
        HlStatementKind kind;
    } kJumps[] = {{"break", HlStatementKind::Break},
                  {"continue", HlStatementKind::Continue},
                  {"discard", HlStatementKind::Discard}};
    for (const auto& jump : kJumps)
        if (Is(jump.word)) {
            HlStatement* const statement = NewStatement(jump.kind);
            ++position;
            return Expect(";") ? statement : nullptr;
        }
    if (Is(";")) {
        ++position;
        return NewStatement(HlStatementKind::Empty);
    }
    if (Is("return")) {
        HlStatement* const statement = NewStatement(HlStatementKind::Return);
        ++position;
        if (!Is(";") && !(statement->condition = Expression()))
            return nullptr;
        return Expect(";") ? statement : nullptr;
    }
    const bool isModified = Is("const") || Is("static") || Is("uniform") || Is("row_major") ||
                            Is("column_major") || Is("precise");
    if (isModified || Is("typedef") || Is("struct") || (AtType() && !Peek(1).Is("(")))
        return Declaration();
    HlStatement* const statement = NewStatement(HlStatementKind::Expression);
    statement->condition = Expression();
    return statement->condition && Expect(";") ? statement : nullptr;
}

HlStatement* HlParser::Declaration()
{
    HlStatement* const statement = NewStatement(HlStatementKind::Declare);
    if (Accept("typedef"))
        return TypeDefinition() ? statement : nullptr;
    Modifiers modifiers;
    const HlType* type = nullptr;
    if (!ReadModifiers(modifiers) || !Type(type, modifiers))
        return nullptr;
    if (Accept(";"))
        return statement; // a struct alone
    do {
        if (!LocalVariable(*type, modifiers, *statement))
            return nullptr;
    } while (Accept(","));
    return Expect(";") ? statement : nullptr;
}

bool HlParser::LocalVariable(const HlType& type, const Modifiers& modifiers, HlStatement& statement)
{
    const FxToken name = Peek();
    if (name.kind != fx::FxTokenKind::Identifier)
        return Unexpected("a name");
    ++position;
    HlVariable& variable = unit.variables.emplace_back();
    variable.name = name.text;
    variable.place = name.place;
    variable.type = &type;
    variable.isConst = modifiers.isConst;
    variable.isStatic = modifiers.isStatic;
    if (!ArrayLengths(variable.type) || !Semantics(variable))
        return false;
    if (Accept("=") && !(variable.value = Initializer()))
        return false;
    if (type.kind == HlKind::Void)
        return Fail(name.place, FxError::UnknownType, "a variable cannot be void");
    statement.variables.push_back(&variable);
    return true;
}

} // namespace headless::hl
