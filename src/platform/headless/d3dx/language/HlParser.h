#pragma once

#include <span>
#include <string>

#include "platform/headless/d3dx/language/HlSyntax.h"

namespace headless::hl {

/// Reads what a text declares for shaders. Everything else, techniques and the like, is skipped.
/// Bodies of functions are read when they are called first, so that shaders that nobody uses cost
/// nothing.
class HlParser {
public:
    /// All arguments outlive this.
    HlParser(std::span<const FxToken> text, HlUnit& target) : words(text), unit(target) {}

    /// Declarations that cannot be read are left out: the reader of the effect reports them.
    void ReadDeclarations();
    /// False, with errors in `log`, if the body is malformed.
    bool ReadBody(HlFunction& function, HlLog& log);
    /// A list of arguments, `begin` at its bracket. `endOut` is behind the closing one.
    bool ReadArguments(size_t begin, HlLog& log, std::vector<HlExpression*>& argumentsOut,
                       size_t& endOut);

private:
    struct Modifiers {
        bool isStatic = false, isConst = false, isUniform = false, isExtern = false;
        bool isIn = false, isOut = false;
        int order = 0; ///< 1 row_major, 2 column_major
    };

    // HlParser.cpp: words
    const FxToken& Peek(size_t ahead = 0) const
    {
        return position + ahead < end ? words[position + ahead] : nothing;
    }
    bool Is(std::string_view sign) const { return Peek().Is(sign); }
    bool Accept(std::string_view sign);
    bool Expect(std::string_view sign);
    bool Unexpected(const std::string& wanted);
    bool Fail(FxPlace place, FxError kind, const std::string& text);
    bool SkipBrackets(std::string_view open, std::string_view close);
    void SkipDeclaration(size_t begin);

    // HlParserDeclarations.cpp
    bool TopLevel();
    bool TypeDefinition();
    bool Declarators(const HlType& type, const Modifiers& modifiers);
    void SkipValue();
    bool Function(const HlType& result);
    bool Parameter(HlFunction& function);
    bool ReadModifiers(Modifiers& modifiersOut);
    bool AtType(size_t ahead = 0) const;
    const HlType* FindType(std::string_view name) const;
    bool Type(const HlType*& typeOut, const Modifiers& modifiers);
    bool TemplateType(bool isMatrix, const HlType*& typeOut);
    bool Struct(const HlType*& typeOut);
    bool Members(HlStruct& structure);
    bool ArrayLengths(const HlType*& typeInOut);
    bool WholeNumber(const HlExpression& expression, int& valueOut) const;
    bool Semantics(HlVariable& variable);
    const HlType* Ordered(const HlType& type, const Modifiers& modifiers) const;

    // HlParserStatements.cpp
    HlStatement* NewStatement(HlStatementKind kind);
    HlStatement* Statement();
    HlStatement* Block();
    HlStatement* If();
    HlStatement* For();
    HlStatement* While();
    HlStatement* Do();
    HlStatement* Declaration();
    HlStatement* Simple();
    bool LocalVariable(const HlType& type, const Modifiers& modifiers, HlStatement& statement);
    bool Attribute(HlHint& hintOut);

    // HlParserSwitch.cpp
    struct Cases;
    HlStatement* Switch(HlHint hint);
    void KeepValue(HlStatement& statement);
    HlStatement* AddCase(HlStatement& block, HlHint hint, HlExpression* condition,
                         HlStatement* body);
    bool Case(HlStatement& block, Cases& cases);
    bool CaseNumber(Cases& cases, HlExpression*& conditionInOut);
    HlExpression* Either(HlExpression* first, HlExpression* second);
    HlStatement* CaseBody();

    // HlParserExpressions.cpp
    HlExpression* New(HlExpressionKind kind, FxPlace place);
    HlExpression* Add(HlExpression* parent, HlExpression* part);
    HlExpression* Expression();
    HlExpression* Assignment();
    HlExpression* Conditional();
    HlExpression* Binary(int level);
    HlExpression* Unary();
    HlExpression* Cast();
    HlExpression* Postfix();
    HlExpression* Primary();
    HlExpression* Number();
    HlExpression* Initializer();
    bool Arguments(HlExpression& call);

    std::span<const FxToken> words;
    HlUnit& unit;
    HlLog* log = nullptr; ///< null while declarations are read
    size_t position = 0;
    size_t end = 0;
    int nesting = 0;
    FxToken nothing;
};

} // namespace headless::hl
