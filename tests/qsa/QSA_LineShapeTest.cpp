#include "qsa/QSA_LineShape.h"

#include "tests/qsa/TextTesting.h"

namespace {

/// Reads a line of words and whole numbers; false where a number is not read.
bool Learn(QSA_LineShape* shape, const std::string& line, size_t numbers)
{
    const PaddedText text(line);
    QSA_TextCursor cursor = text.Cursor();
    shape->Start(cursor);
    for (size_t i = 0; i < numbers; ++i) {
        while (*cursor.at < '0' || *cursor.at > '9')
            ++cursor.at;
        if (!shape->TakeInt(cursor))
            return false;
    }
    shape->Finish(cursor);
    return true;
}

const QSA_LineShape& ShapeOf(QSA_LineShape* shape)
{
    return *shape;
}

const QSA_LineShape& ShapeOf(QSA_LineShapes* shapes)
{
    return shapes->Last();
}

/// The numbers of a line that has the shape, or one of them, else nothing.
template <class Shape>
std::vector<int32_t> Taken(Shape* shape, const std::string& line)
{
    const PaddedText text(line);
    QSA_TextCursor cursor = text.Cursor();
    if (!shape->Take(cursor)) {
        EXPECT_EQ(text.PlaceOf(cursor), 0u) << line;
        return {};
    }
    EXPECT_EQ(text.PlaceOf(cursor), line.find_last_of("0123456789") + 1) << line;
    std::vector<int32_t> numbers;
    for (size_t i = 0; i < ShapeOf(shape).NumberCount(); ++i)
        numbers.push_back(ShapeOf(shape).Number(i));
    return numbers;
}

using Numbers = std::vector<int32_t>;

const std::string kFirst = "\n\t*LINE_OF   12:\tA:  345 B:9 CA: 1 *END 7\n";

} // namespace

TEST(QSA_LineShape, TakesLinesThatDifferInDigits)
{
    QSA_LineShape shape;
    ASSERT_TRUE(Learn(&shape, kFirst, 5));
    EXPECT_EQ(Taken(&shape, kFirst), (Numbers{12, 345, 9, 1, 7}));
    EXPECT_EQ(Taken(&shape, "\n\t*LINE_OF   80:\tA:  999 B:0 CA: 5 *END 4\n"),
              (Numbers{80, 999, 0, 5, 4}));
    EXPECT_EQ(Taken(&shape, "\n\t*LINE_OF    3:\tA:    0 B:0 CA: 5 *END 4\n"),
              (Numbers{3, 0, 0, 5, 4}))
        << "blanks for digits";
    EXPECT_EQ(Taken(&shape, "\n\t*LINE_OF 1234:\tA: 5678 B:0 CA: 5 *END 4\n"),
              (Numbers{1234, 5678, 0, 5, 4}))
        << "digits for blanks";
}

TEST(QSA_LineShape, RefusesEveryOtherLine)
{
    QSA_LineShape shape;
    ASSERT_TRUE(Learn(&shape, kFirst, 5));
    const char* const cases[] = {
        "\r\t*LINE_OF   12:\tA:  345 B:9 CA: 1 *END 7\n", // other white space
        "\n *LINE_OF   12:\tA:  345 B:9 CA: 1 *END 7\n",
        "\n\t*LINE_ON   12:\tA:  345 B:9 CA: 1 *END 7\n", // another word
        "\n\t*LINE_OF1  12:\tA:  345 B:9 CA: 1 *END 7\n", // a longer keyword
        "\n\t*LINE_OF  1 2:\tA:  345 B:9 CA: 1 *END 7\n", // two numbers
        "\n\t*LINE_OF   1 :\tA:  345 B:9 CA: 1 *END 7\n", // a blank behind the number
        "\n\t*LINE_OF     :\tA:  345 B:9 CA: 1 *END 7\n", // no number
        "\n\t*LINE_OF  -12:\tA:  345 B:9 CA: 1 *END 7\n", // a sign
        "\n\t*LINE_OF  +12:\tA:  345 B:9 CA: 1 *END 7\n",
        "\n\t*LINE_OF  1.2:\tA:  345 B:9 CA: 1 *END 7\n", // a point
        "\n\t*LINE_OF   1/:\tA:  345 B:9 CA: 1 *END 7\n", // the byte below the digits
        "\n\t*LINE_OF   1::\tA:  345 B:9 CA: 1 *END 7\n", // the byte above them
        "\n\t*LINE_OF   12:\tA:  3!5 B:9 CA: 1 *END 7\n", // a byte above the blank
        "\n\t*LINE_OF   12:\tA:12345 B:9 CA: 1 *END 78",  // cut behind the last number
        "\n\t*LINE_OF   12:\tA:  345 B:9 CA: 1 *END 7",
        "\n\t*LINE_OF   12:\tA:  345 B:9 CA: 1 *END 77\n",
        "\n\t*LINE_OF   12:\tA:  345 B:99 CA: 1 *END 7\n", // one byte more in the middle
        "\n\t*LINE_OF   12:\tA:  345 B: 9 CA: 1 *END\n",
        "\n\t*LINE_OF   12:\tA:  345 B:9 CA: 1 *END 7}", // another end
    };
    for (const char* line : cases)
        EXPECT_EQ(Taken(&shape, line), Numbers()) << line;
}

TEST(QSA_LineShape, EveryCutLineIsRefused)
{
    QSA_LineShape shape;
    ASSERT_TRUE(Learn(&shape, kFirst, 5));
    for (size_t length = 0; length < kFirst.size(); ++length)
        EXPECT_EQ(Taken(&shape, kFirst.substr(0, length)), Numbers()) << length;
}

TEST(QSA_LineShape, OneByteFromAmongAllChangesWhatTheReaderReads)
{
    QSA_LineShape shape;
    ASSERT_TRUE(Learn(&shape, kFirst, 5));
    for (size_t place = 0; place < kFirst.size(); ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string line = kFirst;
            line[place] = static_cast<char>(byte);
            const Numbers numbers = Taken(&shape, line);
            if (numbers.empty())
                continue;
            // Taken as five runs of digits, with every other byte as it was.
            std::string rest;
            Numbers expected;
            for (size_t i = 0; i < line.size(); ++i) {
                const bool isDigit = line[i] >= '0' && line[i] <= '9';
                if (!isDigit)
                    rest += line[i] == ' ' ? "" : std::string(1, line[i]);
                else if (i > 0 && line[i - 1] >= '0' && line[i - 1] <= '9')
                    expected.back() = expected.back() * 10 + (line[i] - '0');
                else
                    expected.push_back(line[i] - '0');
            }
            EXPECT_EQ(numbers, expected) << line;
            EXPECT_EQ(rest, "\n\t*LINE_OF:\tA:B:CA:*END\n") << line;
        }
    }
}

TEST(QSA_LineShape, UnusualLinesAreReadButNotKept)
{
    const struct {
        const char* what;
        std::string line;
        size_t numbers;
    } cases[] = {
        {"nine digits", "*A_KEYWORD 123456789\n", 1},
        {"too near the start", "*A 1\n", 1},
        {"too long", "*A_KEYWORD 1" + std::string(200, ' ') + "2\n", 2},
    };
    for (const auto& c : cases) {
        QSA_LineShape shape;
        ASSERT_TRUE(Learn(&shape, c.line, c.numbers)) << c.what;
        EXPECT_EQ(Taken(&shape, c.line), Numbers()) << c.what;
    }
    QSA_LineShape shape;
    std::string many = "*A_KEYWORD";
    for (size_t i = 0; i <= QSA_LineShape::kMostNumbers; ++i)
        many += " 1";
    EXPECT_FALSE(Learn(&shape, many + '\n', QSA_LineShape::kMostNumbers + 1));
}

TEST(QSA_LineShape, SignedNumberIsNotKept)
{
    const PaddedText text("*A_KEYWORD -12 \n");
    QSA_TextCursor cursor = text.Cursor();
    QSA_LineShape shape;
    shape.Start(cursor);
    ASSERT_TRUE(cursor.TakeKeyword("*A_KEYWORD"));
    ASSERT_TRUE(shape.TakeInt(cursor));
    EXPECT_EQ(shape.Number(0), -12);
    shape.Finish(cursor);
    EXPECT_EQ(Taken(&shape, "*A_KEYWORD -12 \n"), Numbers());
}

TEST(QSA_LineShapes, KeepTheLastTwo)
{
    QSA_LineShapes shapes;
    const std::string kLines[] = {"\n\t*LINE_OF 12:\tA\n", "\n\t*LINE_OF 123:\tA\n",
                                  "\n\t*LINE_OF 1234:\tA\n"};
    const Numbers kNumbers[] = {{12}, {123}, {1234}};
    for (const int line : {0, 1}) {
        EXPECT_EQ(Taken(&shapes, kLines[line]), Numbers{});
        ASSERT_TRUE(Learn(&shapes.Last(), kLines[line], 1));
    }
    for (const int line : {0, 0, 1, 0, 1, 1})
        EXPECT_EQ(Taken(&shapes, kLines[line]), kNumbers[line]) << line;
    EXPECT_EQ(Taken(&shapes, kLines[2]), Numbers{})
        << "the second was taken last, so the first goes";
    ASSERT_TRUE(Learn(&shapes.Last(), kLines[2], 1));
    EXPECT_EQ(Taken(&shapes, kLines[1]), kNumbers[1]);
    EXPECT_EQ(Taken(&shapes, kLines[2]), kNumbers[2]);
    EXPECT_EQ(Taken(&shapes, kLines[0]), Numbers{});
}

TEST(QSA_LineShape, TakesAsManyNumbersAsALineMayHave)
{
    for (size_t count = 1; count <= QSA_LineShape::kMostNumbers; ++count) {
        std::string line = "\n\t*LINE_OF";
        Numbers numbers;
        for (size_t i = 0; i < count; ++i) {
            numbers.push_back(static_cast<int32_t>(98765432 - i));
            line += " " + std::to_string(numbers.back());
        }
        line += "\n";
        QSA_LineShape shape;
        ASSERT_TRUE(Learn(&shape, line, count));
        EXPECT_EQ(Taken(&shape, line), numbers) << count;
    }
}

/// Sanitizers see a read of the places where the longer line had numbers.
TEST(QSA_LineShape, ReadsNothingBehindAShortLineThatFollowsALongOne)
{
    const std::string longLine =
        "\n\t*LINE" + std::string(40, ' ') + "11" + std::string(70, ' ') + "22\n";
    const std::string shortLine = "\n\t*LINE    33\n";
    QSA_LineShape shape;
    ASSERT_TRUE(Learn(&shape, longLine, 2));
    EXPECT_EQ(Taken(&shape, longLine), (Numbers{11, 22}));
    ASSERT_TRUE(Learn(&shape, shortLine, 1));
    EXPECT_EQ(Taken(&shape, shortLine), Numbers{33});
}
