#include "batch/MessageTable.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace {

/// A format as the texts between its places for values.
struct MessagePattern {
    std::vector<std::string> pieces; ///< the first one begins the text, the last one ends it
    size_t letters = 0;              ///< of all pieces

    explicit MessagePattern(std::string_view format);
    bool Fits(std::string_view text) const;
};

/// Bytes of the conversion that begins at a '%'.
size_t ConversionLength(std::string_view format)
{
    const size_t end = format.find_first_of("diouxXeEfFgGaAcspn%", 1);
    return end == std::string_view::npos ? format.size() : end + 1;
}

MessagePattern::MessagePattern(std::string_view format)
{
    pieces.emplace_back();
    while (!format.empty()) {
        const size_t mark = std::min(format.find('%'), format.size());
        pieces.back().append(format.substr(0, mark));
        format.remove_prefix(mark);
        if (format.empty())
            break;
        const size_t length = ConversionLength(format);
        if (format.substr(0, length) == "%%")
            pieces.back() += '%';
        else
            pieces.emplace_back();
        format.remove_prefix(length);
    }
    for (const std::string& piece : pieces)
        letters += piece.size();
}

bool MessagePattern::Fits(std::string_view text) const
{
    if (text.size() < letters || !text.starts_with(pieces.front()))
        return false;
    if (pieces.size() == 1)
        return text.size() == pieces.front().size();
    if (!text.ends_with(pieces.back()))
        return false;
    text.remove_prefix(pieces.front().size());
    text.remove_suffix(pieces.back().size());
    for (size_t i = 1; i + 1 < pieces.size(); ++i) {
        const size_t at = text.find(pieces[i]);
        if (at == std::string_view::npos)
            return false;
        text.remove_prefix(at + pieces[i].size());
    }
    return true;
}

const std::vector<MessagePattern>& Patterns()
{
    static const std::vector<MessagePattern> patterns = [] {
        std::vector<MessagePattern> made;
        for (size_t i = 0; i < kMessageRowCount; ++i)
            made.emplace_back(kMessageRows[i].format);
        return made;
    }();
    return patterns;
}

constexpr size_t kNoRow = ~size_t{0};

/// The rows whose texts may begin with a letter. Those that begin with a value are among them each time.
const std::vector<size_t>& RowsFrom(char letter)
{
    static const std::vector<std::vector<size_t>> rows = [] {
        std::vector<std::vector<size_t>> made(256);
        for (size_t i = 0; i < Patterns().size(); ++i) {
            const std::string& start = Patterns()[i].pieces.front();
            for (size_t first = 0; first < made.size(); ++first) {
                if (start.empty() || static_cast<unsigned char>(start.front()) == first)
                    made[first].push_back(i);
            }
        }
        return made;
    }();
    return rows[static_cast<unsigned char>(letter)];
}

/// The fitting row with the most letters, or `best` if none has more than it.
size_t BestRow(std::string_view text, size_t best)
{
    const std::vector<MessagePattern>& patterns = Patterns();
    for (const size_t i : RowsFrom(text.empty() ? '\0' : text.front())) {
        const bool isBetter = best == kNoRow || patterns[i].letters > patterns[best].letters;
        if (isBetter && patterns[i].Fits(text))
            best = i;
    }
    return best;
}

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

} // namespace

std::string CodeText(uint16_t code)
{
    std::string digits = std::to_string(code);
    digits.insert(0, digits.size() < 3 ? 3 - digits.size() : 0, '0');
    return "Q" + digits;
}

const MessageRow& RowOf(uint16_t code)
{
    const MessageRow* const end = kMessageRows + kMessageRowCount;
    const auto isBelow = [](const MessageRow& row, uint16_t wanted) { return row.code < wanted; };
    const MessageRow* const row = std::lower_bound(kMessageRows, end, code, isBelow);
    return row != end && row->code == code ? *row : RowOf(kCodeUnknown);
}

const MessageRow& RowOfText(std::string_view text)
{
    // A thousand messages of one kind often follow each other.
    static thread_local size_t last = kNoRow;
    text = Trimmed(text);
    if (last != kNoRow && Patterns()[last].Fits(text) && Patterns()[last].pieces.front().size() > 8)
        return kMessageRows[last];
    size_t best = BestRow(text, kNoRow);
    constexpr std::string_view kBetween = ": ";
    for (size_t at = text.find(kBetween); at != std::string_view::npos;
         at = text.find(kBetween, at + 1))
        best = BestRow(text.substr(at + kBetween.size()), best);
    last = best;
    return best == kNoRow ? RowOf(kCodeUnknown) : kMessageRows[best];
}

SceneMessage OwnMessage(uint16_t code, const std::string& what)
{
    SceneMessage message;
    const MessageRow& row = RowOf(code);
    message.code = row.code;
    message.level = row.level;
    message.source = "qsbatch";
    message.text = row.format;
    const size_t place = message.text.find("%s");
    if (place != std::string::npos)
        message.text.replace(place, 2, what);
    return message;
}
