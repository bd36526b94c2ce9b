#include "platform/headless/d3dx/effect/FxCondition.h"

#include <charconv>

#include "platform/headless/d3dx/effect/FxLimits.h"

namespace headless::fx {

namespace {

using ConditionValue = uint64_t; // wraps instead of overflowing; treated as signed where it matters

int64_t Signed(ConditionValue value)
{
    return static_cast<int64_t>(value);
}

struct ConditionOperator {
    std::string_view sign;
    int rank;
};

constexpr ConditionOperator kConditionOperators[] = {
    {"||", 1}, {"&&", 2}, {"|", 3},  {"^", 4},  {"&", 5},  {"==", 6},
    {"!=", 6}, {"<", 7},  {"<=", 7}, {">", 7},  {">=", 7}, {"<<", 8},
    {">>", 8}, {"+", 9},  {"-", 9},  {"*", 10}, {"/", 10}, {"%", 10}};

ConditionValue Truth(bool value)
{
    return value ? 1 : 0;
}

ConditionValue Compare(std::string_view sign, int64_t a, int64_t b)
{
    if (sign == "<" || sign == ">=")
        return Truth((a < b) == (sign == "<"));
    return Truth((a > b) == (sign == ">"));
}

class Reader {
public:
    Reader(std::span<const FxToken> text, FxPlace start, FxDiagnostics& log)
        : words(text),
          place(start),
          diagnostics(log)
    {}

    bool Read(bool& valueOut)
    {
        ConditionValue value = 0;
        if (!Choice(value))
            return false;
        if (position < words.size())
            return Fail("a condition does not go on with " + FxDescribe(words[position]));
        valueOut = value != 0;
        return true;
    }

private:
    bool Fail(const std::string& what)
    {
        const FxPlace at = position < words.size() ? words[position].place : place;
        return diagnostics.Fail(at, FxError::BadCondition, what);
    }
    bool Accept(std::string_view sign)
    {
        const bool fits = position < words.size() && words[position].Is(sign);
        position += fits ? 1 : 0;
        return fits;
    }
    bool Choice(ConditionValue& valueOut);
    bool Binary(int lowestRank, ConditionValue& valueOut);
    bool Unary(ConditionValue& valueOut);
    bool Number(ConditionValue& valueOut);
    bool Apply(std::string_view sign, ConditionValue right, ConditionValue& leftInOut);

    std::span<const FxToken> words;
    FxPlace place;
    FxDiagnostics& diagnostics;
    size_t position = 0;
    int depth = 0;
    bool isIgnored = false; ///< the result does not matter, so a division by 0 is not an error
};

/// Counts one level of brackets or signs during its lifetime.
struct Level {
    explicit Level(int& counter) : depth(counter) { ++depth; }
    ~Level() { --depth; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    int& depth;
};

bool Reader::Choice(ConditionValue& valueOut)
{
    const Level level(depth);
    if (depth > kFxMaxNesting)
        return diagnostics.Fail(place, FxError::Limit, "a condition is nested too deeply");
    if (!Binary(1, valueOut))
        return false;
    if (!Accept("?"))
        return true;
    const bool wasIgnored = isIgnored;
    const bool condition = valueOut != 0;
    ConditionValue yes = 0;
    ConditionValue no = 0;
    isIgnored = wasIgnored || !condition;
    if (!Choice(yes))
        return false;
    if (!Accept(":"))
        return Fail("a condition lacks ':'");
    isIgnored = wasIgnored || condition;
    if (!Choice(no))
        return false;
    isIgnored = wasIgnored;
    valueOut = condition ? yes : no;
    return true;
}

bool Reader::Binary(int lowestRank, ConditionValue& valueOut)
{
    if (!Unary(valueOut))
        return false;
    while (position < words.size()) {
        const ConditionOperator* found = nullptr;
        for (const ConditionOperator& candidate : kConditionOperators)
            if (words[position].Is(candidate.sign))
                found = &candidate;
        if (!found || found->rank < lowestRank)
            return true;
        ++position;
        const bool wasIgnored = isIgnored;
        if ((found->sign == "||" && valueOut != 0) || (found->sign == "&&" && valueOut == 0))
            isIgnored = true;
        ConditionValue right = 0;
        if (!Binary(found->rank + 1, right) || !Apply(found->sign, right, valueOut))
            return false;
        isIgnored = wasIgnored;
    }
    return true;
}

bool Reader::Unary(ConditionValue& valueOut)
{
    const Level level(depth);
    if (depth > kFxMaxNesting)
        return diagnostics.Fail(place, FxError::Limit, "a condition is nested too deeply");
    for (const std::string_view sign : {"-", "+", "!", "~"}) {
        if (!Accept(sign))
            continue;
        if (!Unary(valueOut))
            return false;
        if (sign == "-")
            valueOut = 0 - valueOut;
        else if (sign == "!")
            valueOut = Truth(valueOut == 0);
        else if (sign == "~")
            valueOut = ~valueOut;
        return true;
    }
    if (!Accept("("))
        return Number(valueOut);
    if (!Choice(valueOut))
        return false;
    return Accept(")") || Fail("a condition lacks ')'");
}

bool Reader::Number(ConditionValue& valueOut)
{
    valueOut = 0;
    if (position >= words.size())
        return Fail("a condition is not complete");
    const FxToken& word = words[position];
    if (word.kind == FxTokenKind::Identifier) {
        ++position;
        return true;
    }
    std::string_view digits = word.text;
    int base = 10;
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
        base = 16;
    } else if (digits.size() > 1 && digits[0] == '0') {
        base = 8;
    }
    while (!digits.empty() &&
           std::string_view("uUlL").find(digits.back()) != std::string_view::npos)
        digits.remove_suffix(1);
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), valueOut, base);
    if (word.kind != FxTokenKind::Number || error != std::errc() ||
        end != digits.data() + digits.size())
        return Fail("a condition holds no whole number but " + FxDescribe(word));
    ++position;
    return true;
}

bool Reader::Apply(std::string_view sign, ConditionValue right, ConditionValue& leftInOut)
{
    ConditionValue& left = leftInOut;
    const bool divides = sign == "/" || sign == "%";
    if (divides && right == 0) {
        left = 0;
        return isIgnored || Fail("a condition divides by 0");
    }
    if (divides && right == ~ConditionValue{0}) // -1: the smallest number cannot be negated
        left = sign == "/" ? 0 - left : 0;
    else if (divides)
        left = static_cast<ConditionValue>(sign == "/" ? Signed(left) / Signed(right)
                                                       : Signed(left) % Signed(right));
    else if (sign == "||" || sign == "&&")
        left = Truth(sign == "||" ? left != 0 || right != 0 : left != 0 && right != 0);
    else if (sign == "==" || sign == "!=")
        left = Truth((left == right) == (sign == "=="));
    else if (sign == "<<" || sign == ">>")
        left = sign == "<<" ? left << (right & 63)
                            : static_cast<ConditionValue>(Signed(left) >> (right & 63));
    else if (sign[0] == '<' || sign[0] == '>')
        left = Compare(sign, Signed(left), Signed(right));
    else
        left = sign == "|"   ? left | right
               : sign == "^" ? left ^ right
               : sign == "&" ? left & right
               : sign == "+" ? left + right
               : sign == "-" ? left - right
                             : left * right;
    return true;
}

} // namespace

bool FxEvaluateCondition(std::span<const FxToken> words, FxPlace place, FxDiagnostics& diagnostics,
                         bool& valueOut)
{
    return Reader(words, place, diagnostics).Read(valueOut);
}

} // namespace headless::fx
