// The codes of messages, and the documents that list them.

#include <algorithm>
#include <iterator>
#include <regex>

#include "batch/MessageTable.h"
#include "tests/batch/BatchTesting.h"
#include "tests/support/FileContent.h"

using namespace batch_testing;

namespace {

std::string TreeFile(const std::string& name)
{
    return FileContent(SourcePath(name));
}

} // namespace

TEST(MessageTableTest, TextsHaveTheCodeOfTheirFormat)
{
    static const struct {
        const char* text;
        const char* code;
    } cases[] = {
        {"4 vertices duplicated in mesh 'm'", "Q233"},
        {"a.qsa: Invalid face 3 in mesh 'm: n'", "Q235"},
        {"Wrong vertex list order!", "Q203"},
        {"a.qsa: Wrong vertex list order!", "Q203"},
        {"Open() failed: No such file or directory, file:'x'", "Q101"},
        {" D3DXGetImageInfoFromFile failed: E_FAIL (file:x.png)", "Q502"},
        {"File 'a.qsb': Can not open texture: x.png", "Q417"},
        {"something that nobody says", "Q915"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CodeText(RowOfText(c.text).code), c.code) << c.text;
}

TEST(MessageTableTest, RowsAreInOrderAndInTheDocument)
{
    const std::string document = TreeFile("docs/message-codes.md");
    for (size_t i = 0; i < kMessageRowCount; ++i) {
        const MessageRow& row = kMessageRows[i];
        EXPECT_TRUE(i == 0 || kMessageRows[i - 1].code < row.code) << row.code;
        const std::string line = "| " + CodeText(row.code) + " | " + LevelName(row.level) + " | `" +
                                 row.format + "` |\n";
        EXPECT_NE(document.find(line), std::string::npos) << line;
    }
    const auto rows = std::count(document.begin(), document.end(), '\n');
    EXPECT_GE(rows, static_cast<long>(kMessageRowCount));
}

// Each message of the converter's own page has a code, but those of other programs.
TEST(MessageTableTest, KnowsTheMessagesOfTheDiagnostics)
{
    const std::string page = TreeFile("docs/diagnostics.md");
    for (size_t i = 0; i < kMessageRowCount; ++i) {
        if (kMessageRows[i].code < 900) {
            EXPECT_NE(page.find("`" + std::string(kMessageRows[i].format) + "`"), std::string::npos)
                << kMessageRows[i].format;
        }
    }
}

// And the other way round: each error and each warning of the page has a code of its own.
TEST(MessageTableTest, DiagnosticsHaveTheirCodes)
{
    const std::string page = TreeFile("docs/diagnostics.md");
    const std::regex row("\n\\| (`[^|]*`) \\| (error|warning|warning or error)[^|]*\\|");
    size_t texts = 0;
    for (std::sregex_iterator at(page.begin(), page.end(), row), end; at != end; ++at) {
        const std::string cell = (*at)[1];
        const std::regex quoted("`([^`]+)`");
        for (std::sregex_iterator text(cell.begin(), cell.end(), quoted); text != end; ++text) {
            if ((*text)[1] == "the device does not give it") // what stands for a %s
                continue;
            ++texts;
            EXPECT_NE(RowOfText((*text)[1].str()).code, kCodeUnknown) << (*text)[1];
        }
    }
    EXPECT_GE(texts, 100u);
}
