#include <filesystem>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Ascii.h"
#include "base/File.h"
#include "qsa/QSA_Keywords.h"
#include "tests/support/TreePaths.h"

namespace {

using Words = std::set<std::string>;

std::string ReadAll(const std::filesystem::path& path)
{
    File file;
    if (!file.Open(path.string().c_str(), true, true, false)) {
        ADD_FAILURE() << "cannot open " << path;
        return "";
    }
    std::string text(static_cast<size_t>(file.GetSize()), '\0');
    file.Read(text.data(), file.GetSize());
    return text;
}

bool IsWordByte(char byte)
{
    return byte == '_' || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z');
}

/// The keywords that follow an asterisk in `text`, in capital letters, each once.
Words KeywordsIn(const std::string& text)
{
    Words found;
    for (size_t at = text.find('*'); at != std::string::npos; at = text.find('*', at + 1)) {
        std::string word;
        for (size_t i = at + 1; i < text.size() && IsWordByte(ToUpperAscii(text[i])); ++i)
            word += ToUpperAscii(text[i]);
        if (ClassifyKeyword(word.c_str(), static_cast<int32_t>(word.size())) != QSA_Token::Unknown)
            found.insert(word);
    }
    return found;
}

// Only words of the table are collected, each once, so nothing is missing if there are as many of
// them as in the table.
testing::Matcher<Words> HasEveryKeyword()
{
    return testing::SizeIs(static_cast<size_t>(kKeywordNumber));
}

} // namespace

TEST(ExampleKeywords, WordsOutsideTheTableDoNotCount)
{
    EXPECT_THAT(KeywordsIn("*SCENE {\n*scene_firstframe 0 *NO_SUCH_WORD 1 * *SCENE }"),
                testing::ElementsAre("SCENE", "SCENE_FIRSTFRAME"));
}

TEST(ExampleKeywords, ExamplesTogetherHoldEveryKeyword)
{
    Words found;
    int scenes = 0;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(SourcePath("examples"))) {
        if (entry.path().extension() != ".qsa")
            continue;
        ++scenes;
        found.merge(KeywordsIn(ReadAll(entry.path())));
    }
    EXPECT_GE(scenes, 2);
    EXPECT_THAT(found, HasEveryKeyword());
}

TEST(ExampleKeywords, KeywordSceneAloneHoldsEveryKeyword)
{
    EXPECT_THAT(KeywordsIn(ReadAll(SourcePath("examples/keywords.qsa"))), HasEveryKeyword());
}

TEST(ExampleKeywords, FormatGuideNamesEveryKeyword)
{
    EXPECT_THAT(KeywordsIn(ReadAll(SourcePath("docs/qsa-format.md"))), HasEveryKeyword());
}
