// Results in the lines of a chunk's journal.

#include "batch/ChunkRecord.h"
#include "batch/Base64.h"
#include "tests/batch/BatchTesting.h"

TEST(Base64Test, TextsAreThoseOfTheStandard)
{
    const struct {
        const char* bytes;
        const char* text;
    } cases[] = {{"", ""},
                 {"f", "Zg=="},
                 {"fo", "Zm8="},
                 {"foo", "Zm9v"},
                 {"foob", "Zm9vYg=="},
                 {"fooba", "Zm9vYmE="},
                 {"foobar", "Zm9vYmFy"}};
    for (const auto& c : cases) {
        EXPECT_EQ(Base64(c.bytes), c.text);
        std::string bytes;
        EXPECT_TRUE(BytesOfBase64(c.text, bytes)) << c.text;
        EXPECT_EQ(bytes, c.bytes);
    }
    std::string bytes;
    EXPECT_TRUE(BytesOfBase64("+/+/", bytes));
    EXPECT_EQ(bytes, "\xFB\xFF\xBF");
}

TEST(Base64Test, OtherTextsAreRefused)
{
    for (const char* const text :
         {"Zg=", "Zg", "Z", "Zg==Zg==", "Zm9*", "====", "Zm 9v", "Zm9\n"}) {
        std::string bytes;
        EXPECT_FALSE(BytesOfBase64(text, bytes)) << text;
    }
}

namespace {

ChunkRecord SomeRecord()
{
    ChunkRecord record;
    record.sceneCount = 7;
    record.keys = {"target key", "frame key"};
    record.job.path = "sub/a.qsa";
    record.job.target = "o/a.qsb";
    record.job.draws = true;
    record.result.status = SceneStatus::kConverted;
    record.result.hasSource = true;
    record.result.source.sizeBytes = 12;
    record.result.inputs = {{"p.tga", true, {5, 6, {}}}, {"/share/q.tga", false, {}}};
    record.result.thumb = std::string("\0\xFF\"", 3);
    return record;
}

} // namespace

TEST(ChunkRecordTest, LineGivesBackItselfAndTheResult)
{
    const std::string line = "{\"path\":\"a\",\"x\":\",\\\"record\\\":\"}";
    const std::string whole = LineWithRecord(line, SomeRecord());
    EXPECT_TRUE(whole.starts_with("{\"path\":\"a\",\"x\":\",\\\"record\\\":\",\"record\":\""));
    std::string plain;
    ChunkRecord record;
    ASSERT_TRUE(TakeRecord(whole, plain, record));
    EXPECT_EQ(plain, line);
    EXPECT_EQ(record.sceneCount, 7u);
    EXPECT_EQ(record.keys.target, "target key");
    EXPECT_EQ(record.keys.frame, "frame key");
    EXPECT_EQ(record.job.path, "sub/a.qsa");
    EXPECT_EQ(record.result.source.sizeBytes, 12u);
    EXPECT_EQ(record.result.inputs.size(), 2u);
    EXPECT_EQ(record.result.thumb, std::string("\0\xFF\"", 3));
}

TEST(ChunkRecordTest, EveryTruncationAndEveryChangedByteIsFound)
{
    const std::string whole = LineWithRecord("{\"path\":\"a\"}", SomeRecord());
    std::string plain;
    ChunkRecord record;
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(TakeRecord(whole.substr(0, size), plain, record)) << size;
    for (size_t at = 0; at < whole.size(); ++at) {
        std::string changed = whole;
        changed[at] = changed[at] == 'x' ? 'y' : 'x';
        EXPECT_FALSE(TakeRecord(changed, plain, record)) << at;
    }
    EXPECT_FALSE(TakeRecord("{\"path\":\"a\"}", plain, record));
}

// Inputs below the root move with it.
TEST(ChunkRecordTest, InputsAreRelativeToTheRoot)
{
    SceneResult result = SomeRecord().result;
    result.inputs = {{"/scenes/sub/p.tga", true, {}},
                     {"/scenes/../q.tga", false, {}},
                     {"/scenes2/r.tga", false, {}},
                     {"\\\\share\\s.tga", false, {}}};
    const ChunkRecorder recorder({"t", "f"}, "/scenes", 3);
    std::string plain;
    ChunkRecord record;
    ASSERT_TRUE(TakeRecord(recorder.LineOf("{\"a\":1}", SomeRecord().job, result), plain, record));
    std::vector<std::string> paths;
    for (const SceneInput& input : record.result.inputs)
        paths.push_back(InputBelow("/there", input.path));
    EXPECT_THAT(paths, testing::ElementsAre("/there/sub/p.tga", "/there/../q.tga", "/scenes2/r.tga",
                                            "\\\\share\\s.tga"));
    EXPECT_EQ(record.sceneCount, 3u);
}
