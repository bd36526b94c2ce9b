#include "platform/headless/d3dx/language/HlUnused.h"

#include <string_view>
#include <unordered_map>
#include <utility>

namespace headless::hl {

namespace {

/// Walks a body and resolves its names as they are resolved when it runs.
class UseWalk {
public:
    std::vector<const HlVariable*> unused; ///< local variables

    void Declare(const HlVariable& variable)
    {
        byName[variable.name].push_back(open.size());
        open.push_back({&variable, false});
    }

    /// Names that were declared since `begin` end here. What goes out is read by the caller.
    void Close(size_t begin, std::vector<const HlVariable*>& unusedOut)
    {
        for (size_t i = begin; i < open.size() && unusedOut.size() < HlLog::kMaxWarnings; ++i)
            if (!open[i].isRead && !open[i].variable->isOut)
                unusedOut.push_back(open[i].variable);
        for (; open.size() > begin; open.pop_back())
            byName[open.back().variable->name].pop_back();
    }

    void WalkScope(const HlStatement* statement)
    {
        const size_t begin = open.size();
        if (statement)
            Walk(*statement);
        Close(begin, unused);
    }

private:
    struct Open {
        const HlVariable* variable;
        bool isRead;
    };

    void Walk(const HlStatement& statement)
    {
        switch (statement.kind) {
        case HlStatementKind::Declare:
            WalkDeclaration(statement);
            return;
        case HlStatementKind::Block:
            WalkBlock(statement);
            return;
        case HlStatementKind::For: // what its head declares lives on behind it
            if (statement.first)
                Walk(*statement.first);
            break;
        default:
            WalkScope(statement.first);
            break;
        }
        const bool isValueUsed = statement.kind != HlStatementKind::Expression;
        if (statement.condition)
            Walk(*statement.condition, isValueUsed);
        WalkScope(statement.second);
        if (statement.step)
            Walk(*statement.step, false);
    }

    void WalkDeclaration(const HlStatement& statement)
    {
        for (const HlVariable* variable : statement.variables) {
            if (variable->value)
                Walk(*variable->value, true);
            Declare(*variable);
        }
    }

    void WalkBlock(const HlStatement& statement)
    {
        const size_t begin = open.size();
        for (const HlStatement* one : statement.list)
            Walk(*one);
        Close(begin, unused);
    }

    /// A variable that is only written is not read, unless the value of the assignment is used.
    void Walk(const HlExpression& expression, bool isValueUsed)
    {
        switch (expression.kind) {
        case HlExpressionKind::Name:
            Read(expression.name);
            return;
        case HlExpressionKind::Comma:
            Walk(*expression.parts[0], false);
            Walk(*expression.parts[1], isValueUsed);
            return;
        case HlExpressionKind::Assign:
            Walk(*expression.parts[1], true);
            [[fallthrough]];
        case HlExpressionKind::Step:
            isValueUsed ? Walk(*expression.parts[0], true) : WalkPlace(*expression.parts[0]);
            return;
        default:
            for (const HlExpression* part : expression.parts)
                Walk(*part, true);
        }
    }

    /// Of a place that is written only the indices are read.
    void WalkPlace(const HlExpression& place)
    {
        if (place.kind == HlExpressionKind::Name)
            return;
        if (place.parts.empty())
            return Walk(place, true);
        WalkPlace(*place.parts[0]);
        for (size_t i = 1; i < place.parts.size(); ++i)
            Walk(*place.parts[i], true);
    }

    void Read(std::string_view name)
    {
        const auto found = byName.find(name);
        if (found != byName.end() && !found->second.empty())
            open[found->second.back()].isRead = true;
    }

    std::vector<Open> open;
    std::unordered_map<std::string_view, std::vector<size_t>> byName; ///< the last one is seen
};

} // namespace

void HlFindUnused(HlFunction& function)
{
    UseWalk walk;
    for (const HlVariable* parameter : function.parameters)
        walk.Declare(*parameter);
    walk.WalkScope(function.body);
    walk.Close(0, function.unusedParameters);
    function.unusedLocals = std::move(walk.unused);
}

} // namespace headless::hl
