#pragma once

#include <deque>
#include <map>
#include <string_view>
#include <vector>

#include "platform/headless/d3dx/effect/FxToken.h"
#include "platform/headless/d3dx/language/HlLog.h"
#include "platform/headless/d3dx/language/HlTypes.h"

namespace headless::hl {

using fx::FxToken;

enum class HlOperator : uint8_t {
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual,
    LogicalAnd,
    LogicalOr,
    BitAnd,
    BitOr,
    BitXor,
    ShiftLeft,
    ShiftRight,
    // with one operand
    Plus,
    Minus,
    Not,
    Complement,
    // with a place
    Assign, ///< `number` 1 for one that computes first, by `second`
    Increment,
    Decrement,
};

enum class HlExpressionKind : uint8_t {
    Number,
    Name,
    Unary,
    Binary,
    Assign,
    Step, ///< ++ and --
    Condition,
    Cast,
    Construct,
    Call,
    Member,
    Index,
    Comma,
    List, ///< in braces
};

struct HlExpression {
    HlExpressionKind kind = HlExpressionKind::Number;
    HlOperator op = HlOperator::Add;
    bool isCompound = false;     ///< of `Assign`: computes with `op` first
    bool isPrefix = false;       ///< of `Step`
    HlBase base = HlBase::Float; ///< of a number
    float number = 0.0f;
    int depth = 1;
    FxPlace place;                ///< of the word or sign that says what it is
    FxPlace begin;                ///< of its first word
    std::string_view name;        ///< of names, calls, members
    const HlType* type = nullptr; ///< of casts and constructors
    std::vector<HlExpression*> parts;
};

struct HlVariable {
    std::string_view name;
    FxPlace place;
    const HlType* type = nullptr;
    std::string_view semantic;
    HlExpression* value = nullptr; ///< the initial value, or a parameter's default
    bool isStatic = false;
    bool isConst = false;
    bool isUniform = false;
    bool isIn = true, isOut = false; ///< of a parameter
    char registerKind = 0;           ///< 'c', 's', 'b', 'i' of `register(...)`; 0 for none
    uint32_t registerNumber = 0;
};

enum class HlStatementKind : uint8_t {
    Empty,
    Expression,
    Declare,
    Block,
    If,
    Case, ///< the body of a case, which `break` leaves
    For,
    While,
    Do,
    Break,
    Continue,
    Return,
    Discard,
};

enum class HlHint : uint8_t { None, Unroll, Loop, Branch, Flatten };

struct HlStatement {
    HlStatementKind kind = HlStatementKind::Empty;
    HlHint hint = HlHint::None;
    FxPlace place;
    HlExpression* condition = nullptr; ///< or the expression, or what is returned
    HlExpression* step = nullptr;
    HlStatement* first = nullptr;  ///< the body, or what `for` begins with
    HlStatement* second = nullptr; ///< `else`, or the body of `for`
    std::vector<HlVariable*> variables;
    std::vector<HlStatement*> list;
};

struct HlFunction {
    std::string_view name;
    FxPlace place;
    const HlType* result = nullptr;
    std::string_view semantic;
    std::vector<HlVariable*> parameters;
    size_t bodyBegin = 0, bodyEnd = 0; ///< words of the body, with its brackets; equal for none
    HlStatement* body = nullptr;       ///< read when it is called first
    std::vector<const HlVariable*> unusedLocals, unusedParameters; ///< that nobody reads
    bool isRead = false;
    bool isUsed = false; ///< is being run: it cannot call itself
};

/// Expressions of all functions that are read.
constexpr size_t kHlMaxExpressions = size_t{1} << 18;

/// Everything that a text declares for shaders.
struct HlUnit {
    HlTypes types;
    std::deque<HlExpression> expressions;
    std::deque<HlStatement> statements;
    std::deque<HlVariable> variables;
    std::deque<HlFunction> functions;
    std::map<std::string_view, std::vector<HlFunction*>> functionsByName;
    std::map<std::string_view, HlVariable*> globals;
    std::vector<HlVariable*> globalList; ///< in the order of the text
    std::map<std::string_view, const HlType*> typeNames;
};

} // namespace headless::hl
