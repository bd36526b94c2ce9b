#include "fuzz/support/SceneTextMutator.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "fuzz/support/Dice.h"
#include "fuzz/support/SceneTextGrammar.h"

namespace {

constexpr const char* kNumbers[] = {
    "0",          "1",           "-1",     "2",       "3",     "0.5",        "-0.25",
    "1e-8",       "180",         "6.2832", "-7",      "65535", "65536",      "65537",
    "1e38",       "-1e39",       "nan",    "1.#QNAN", "0x10",  "1.5e+3",     "255",
    "2147483647", "-2147483648", "1e",     "-",       "4800",  "99999999999"};
constexpr const char* kNames[] = {"\"a\"", "\"b\"",        "\"Bounds\"", "\"\"",  "\"a",
                                  "\"A\"", "\"a mirror\"", "\"b*3\"",    "plain", "\"c'd\""};
constexpr const char* kPictures[] = {"\"a.ppm\"",    "\"b.tga\"",  "\"c.ifl\"", "\"none.png\"",
                                     "\"x\\a.ppm\"", "\"/b.tga\"", "\"\""};
constexpr std::string_view kEntryLists[][2] = {
    {"MESH_NUMVERTEX", "*MESH_VERTEX "}, {"MESH_NUMFACES", "*MESH_FACE "},
    {"MESH_NUMTVERTEX", "*MESH_TVERT "}, {"MESH_NUMTVFACES", "*MESH_TFACE "},
    {"NUMSUBMTLS", "*SUBMATERIAL "},     {"MATERIAL_COUNT", "*MATERIAL "}};

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool EndsKeyword(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '{';
}

std::string Filled(const char* text, Dice& dice)
{
    std::string made;
    for (; *text; ++text) {
        if (*text != '%') {
            made += *text;
            continue;
        }
        switch (*++text) {
        case 'n':
            made += static_cast<char>('0' + dice.Below(4));
            break;
        case 'q':
            made += dice.Pick(kNames);
            break;
        case 'p':
            made += dice.Pick(kPictures);
            break;
        default:
            made += dice.OneIn(4) ? dice.Pick(kNumbers) : std::to_string(dice.Below(9));
            break;
        }
    }
    return made;
}

/// A text as its statements and the braces that close blocks, each with the space behind it.
class Statements {
public:
    explicit Statements(std::string_view text)
    {
        bool isQuoted = false;
        size_t start = 0;
        for (size_t i = 0; i < text.size(); ++i) {
            isQuoted = isQuoted != (text[i] == '"');
            const bool isNext = !isQuoted && (text[i] == '*' || text[i] == '}');
            if (isNext && i > start) {
                parts.emplace_back(text.substr(start, i - start));
                start = i;
            }
        }
        parts.emplace_back(text.substr(start));
    }

    std::string Text() const
    {
        std::string text;
        for (const std::string& part : parts)
            text += part;
        return text;
    }

    static bool Opens(std::string_view part) { return part.find('{') != std::string_view::npos; }
    static bool Closes(std::string_view part) { return part.starts_with('}'); }

    static std::string_view KeywordOf(std::string_view part)
    {
        const size_t start = part.starts_with('*') ? 1 : 0;
        size_t end = start;
        while (end < part.size() && !EndsKeyword(part[end]))
            ++end;
        return part.substr(start, end - start);
    }
    static bool HasKeyword(std::string_view part, std::string_view keyword)
    {
        const size_t end = 1 + keyword.size();
        return part.starts_with('*') && part.substr(1).starts_with(keyword) &&
               (end == part.size() || EndsKeyword(part[end]));
    }

    /// Behind the statement at `place` and, if it opens a block, behind that.
    size_t EndOf(size_t place) const
    {
        int depth = 0;
        for (size_t i = place; i < parts.size(); ++i) {
            depth += Opens(parts[i]) ? 1 : 0;
            depth -= Closes(parts[i]) ? 1 : 0;
            if (depth <= 0)
                return i + 1;
        }
        return parts.size();
    }

    /// The keyword of the block that `place` is in.
    std::string BlockAt(size_t place) const
    {
        int depth = 0;
        for (size_t i = place; i-- > 0;) {
            depth += Closes(parts[i]) ? 1 : 0;
            depth -= Opens(parts[i]) ? 1 : 0;
            if (depth < 0)
                return std::string(KeywordOf(parts[i]));
        }
        return "";
    }

    std::vector<std::string> parts; ///< never empty
};

std::string_view SameBlock(std::string_view block)
{
    for (const SceneBlockAlias& alias : kSceneBlockAliases) {
        if (block == alias.block)
            return alias.same;
    }
    return block;
}

std::string NewStatement(const std::string& block, Dice& dice)
{
    std::vector<const char*> fitting;
    const std::string_view same = SameBlock(block);
    for (const SceneStatement& row : kSceneStatements) {
        if (same == row.block)
            fitting.push_back(row.text);
    }
    const bool takesAny = fitting.empty() || dice.OneIn(12);
    std::string made =
        Filled(takesAny ? dice.Pick(kSceneStatements).text : dice.Pick(fitting), dice);
    if (Statements::Opens(made)) {
        const std::string keyword(Statements::KeywordOf(made));
        made += '\n';
        for (size_t i = dice.Below(4); i > 0; --i) {
            for (const SceneStatement& row : kSceneStatements) {
                if (SameBlock(keyword) == row.block && dice.OneIn(4))
                    made += Filled(row.text, dice) + (Statements::Opens(row.text) ? "}\n" : "\n");
            }
        }
        made += '}';
    }
    return made + '\n';
}

// ---- What may be done to a text

void Insert(Statements& text, Dice& dice)
{
    const size_t place = dice.Below(text.parts.size() + 1);
    text.parts.insert(text.parts.begin() + static_cast<ptrdiff_t>(place),
                      NewStatement(text.BlockAt(place), dice));
}

void Remove(Statements& text, Dice& dice)
{
    const size_t place = dice.Below(text.parts.size());
    const size_t end = dice.OneIn(8) ? place + 1 : text.EndOf(place);
    text.parts.erase(text.parts.begin() + static_cast<ptrdiff_t>(place),
                     text.parts.begin() + static_cast<ptrdiff_t>(end));
    if (text.parts.empty())
        text.parts.emplace_back();
}

std::vector<std::string> Copied(const Statements& text, size_t place)
{
    return {text.parts.begin() + static_cast<ptrdiff_t>(place),
            text.parts.begin() + static_cast<ptrdiff_t>(text.EndOf(place))};
}

/// Once or many times: lists have limits.
void Repeat(Statements& text, Dice& dice)
{
    const size_t place = dice.Below(text.parts.size());
    const std::vector<std::string> copy = Copied(text, place);
    for (size_t i = dice.OneIn(6) ? dice.Below(40) : 1; i > 0; --i)
        text.parts.insert(text.parts.begin() + static_cast<ptrdiff_t>(place), copy.begin(),
                          copy.end());
}

void Move(Statements& text, Dice& dice)
{
    const size_t from = dice.Below(text.parts.size());
    const std::vector<std::string> moved = Copied(text, from);
    text.parts.erase(text.parts.begin() + static_cast<ptrdiff_t>(from),
                     text.parts.begin() + static_cast<ptrdiff_t>(from + moved.size()));
    const size_t to = dice.Below(text.parts.size() + 1);
    text.parts.insert(text.parts.begin() + static_cast<ptrdiff_t>(to), moved.begin(), moved.end());
}

/// The numbers of a statement behind its keyword: where each begins, and its length.
std::vector<std::pair<size_t, size_t>> NumbersIn(const std::string& part)
{
    std::vector<std::pair<size_t, size_t>> found;
    for (size_t i = part.find_first_of(" \t"); i < part.size(); ++i) {
        if (!IsDigit(part[i]) && part[i] != '-')
            continue;
        const size_t end = std::min(part.find_first_not_of("0123456789.eE+-", i), part.size());
        found.emplace_back(i, end - i);
        i = end;
    }
    return found;
}

void ChangeNumber(Statements& text, Dice& dice)
{
    for (int tries = 0; tries < 8; ++tries) {
        std::string& part = dice.Pick(text.parts);
        auto numbers = NumbersIn(part);
        if (numbers.empty())
            continue;
        const auto [at, length] = dice.Pick(numbers);
        std::string value = dice.Pick(kNumbers);
        if (dice.OneIn(2))
            value = std::to_string(std::atoll(part.c_str() + at) % INT32_MAX +
                                   (dice.OneIn(2) ? 1 : -1));
        part.replace(at, length, value);
        return;
    }
}

/// Counts that are right, or wrong by one: random ones are refused at once.
void MendCounts(Statements& text, Dice& dice)
{
    for (size_t i = 0; i < text.parts.size(); ++i) {
        for (const auto& [counter, entry] : kEntryLists) {
            if (!Statements::HasKeyword(text.parts[i], counter))
                continue;
            size_t count = 0;
            for (size_t j = i; j < text.parts.size(); ++j)
                count += text.parts[j].starts_with(entry) ? 1 : 0;
            if (dice.OneIn(6))
                count += dice.OneIn(2) ? 1 : 2;
            text.parts[i] = "*" + std::string(counter) + " " + std::to_string(count) + "\n";
        }
    }
}

/// The entries of each list in order, as the reader wants them.
void MendIndices(Statements& text, Dice&)
{
    size_t next[std::size(kEntryLists)] = {};
    for (std::string& part : text.parts) {
        for (size_t i = 0; i < std::size(kEntryLists); ++i) {
            const auto& [counter, entry] = kEntryLists[i];
            if (Statements::HasKeyword(part, counter))
                next[i] = 0;
            if (!part.starts_with(entry))
                continue;
            const size_t end =
                std::min(part.find_first_not_of("-0123456789", entry.size()), part.size());
            part.replace(entry.size(), end - entry.size(), std::to_string(next[i]++));
        }
    }
}

void ChangeKeyword(Statements& text, Dice& dice)
{
    std::string& part = dice.Pick(text.parts);
    if (!part.starts_with('*'))
        return;
    const std::string_view other = Statements::KeywordOf(dice.Pick(kSceneStatements).text);
    part.replace(1, Statements::KeywordOf(part).size(), other);
}

/// The text in the quotes of a statement; nothing if there is none.
std::pair<size_t, size_t> QuotedIn(const std::string& part)
{
    const size_t first = part.find('"');
    const size_t last = first == std::string::npos ? first : part.find('"', first + 1);
    return last == std::string::npos ? std::pair<size_t, size_t>(0, 0)
                                     : std::pair(first, last + 1 - first);
}

/// Names link objects, so two of a text become the same one.
void ChangeName(Statements& text, Dice& dice)
{
    std::vector<std::pair<std::string*, std::pair<size_t, size_t>>> quoted;
    for (std::string& part : text.parts) {
        if (const auto found = QuotedIn(part); found.second > 0)
            quoted.emplace_back(&part, found);
    }
    if (quoted.empty())
        return;
    const auto& [part, where] = dice.Pick(quoted);
    const auto& [other, otherWhere] = dice.Pick(quoted);
    std::string name = other->substr(otherWhere.first, otherWhere.second);
    if (dice.OneIn(3))
        name = dice.OneIn(2) ? dice.Pick(kNames) : dice.Pick(kPictures);
    if (dice.OneIn(16))
        name.insert(1, std::string(64 * dice.Below(8), 'x'));
    part->replace(where.first, where.second, name);
}

/// What the text looks like, not what it says: separators, case, line ends.
void ChangeLook(Statements& text, Dice& dice)
{
    std::string& part = dice.Pick(text.parts);
    if (part.empty())
        return;
    static constexpr const char* kSpaces[] = {" ", "\t", ",", "\r\n", "", "  ", "\v", "\x1a"};
    const size_t space = part.find_first_of(" \t\n", dice.Below(part.size()));
    if (space != std::string::npos && !dice.OneIn(4)) {
        part.replace(space, 1, dice.Pick(kSpaces));
        return;
    }
    for (char& c : part)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

void Cut(Statements& text, Dice& dice)
{
    std::string& part = dice.Pick(text.parts);
    part.resize(dice.Below(part.size() + 1));
    if (dice.OneIn(2))
        text.parts.resize(static_cast<size_t>(&part - text.parts.data()) + 1);
}

constexpr void (*kTextSteps[])(Statements&, Dice&) = {
    Insert,       Insert,     Insert,      Remove,        Repeat,     Move,       ChangeNumber,
    ChangeNumber, MendCounts, MendIndices, ChangeKeyword, ChangeName, ChangeLook, Cut};

} // namespace

std::string MutateSceneText(std::string_view text, uint32_t seed)
{
    Dice dice(seed);
    Statements statements(text);
    for (size_t i = 1 + dice.Below(4); i > 0; --i)
        dice.Pick(kTextSteps)(statements, dice);
    if (dice.OneIn(2)) {
        MendIndices(statements, dice);
        MendCounts(statements, dice);
    }
    return statements.Text();
}

std::string CrossSceneTexts(std::string_view text, std::string_view other, uint32_t seed)
{
    Dice dice(seed);
    Statements statements(text), others(other);
    const std::vector<std::string> taken = Copied(others, dice.Below(others.parts.size()));
    const size_t place = dice.Below(statements.parts.size() + 1);
    statements.parts.insert(statements.parts.begin() + static_cast<ptrdiff_t>(place), taken.begin(),
                            taken.end());
    if (dice.OneIn(2)) {
        MendIndices(statements, dice);
        MendCounts(statements, dice);
    }
    return statements.Text();
}
