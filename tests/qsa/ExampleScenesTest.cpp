// The scenes of examples/ through the loader: unchanged, truncated, and with changed bytes. A full
// run takes hours, so the tests take a sample; with QSA_EVERY_TRUNCATION=1 in the environment they
// try every length of every example.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <random>
#include <regex>

#include "base/Log.h"
#include "tests/qsa/QSATesting.h"
#include "tests/support/FileContent.h"
#include "tests/support/TreePaths.h"

namespace {

namespace fs = std::filesystem;

/// Lengths of each example in an ordinary run: spread over the whole text at random distances, so
/// they hit any byte of a line.
constexpr size_t kSampledLengths = 60;
constexpr int kChangedTexts = 25; ///< per example

fs::path ExampleDirectory()
{
    return SourcePath("examples");
}

std::vector<fs::path> ExampleScenes()
{
    std::vector<fs::path> scenes;
    for (const auto& entry : fs::recursive_directory_iterator(ExampleDirectory())) {
        if (entry.path().extension() == ".qsa")
            scenes.push_back(entry.path());
    }
    std::sort(scenes.begin(), scenes.end());
    EXPECT_GE(scenes.size(), 9u);
    return scenes;
}

std::string ReadText(const fs::path& path)
{
    EXPECT_TRUE(fs::exists(path)) << path;
    return FileContent(path);
}

/// The lengths to which a text is truncated, longest first, so that one file can be truncated
/// repeatedly.
std::vector<size_t> CutLengths(size_t size)
{
    const char* wish = std::getenv("QSA_EVERY_TRUNCATION");
    const size_t step = wish && *wish == '1' ? 1 : size / kSampledLengths + 1;
    std::mt19937 random(static_cast<uint32_t>(size));
    std::vector<size_t> lengths;
    for (size_t first = 0; first < size; first += step)
        lengths.push_back(first + random() % std::min(step, size - first));
    std::reverse(lengths.begin(), lengths.end());
    return lengths;
}

/// The errors that a valid text may end in when truncated: a block without its brace, a list whose
/// last index is cut, a mesh whose lists are longer than the rest of the file or whose faces are
/// all missing, a clone whose source is cut off, a key before the first one because its time lost
/// its last digits.
bool IsErrorOfACutText(const std::string& error)
{
    static const std::regex kStated(
        "scene\\.qsa: ("
        "'[^]' not found|"
        "Wrong (vertex|face) list order!|"
        "(Material|Submaterial) in wrong order!|"
        "Mesh '[^']*' can not have -?[0-9]+ (vertices|faces|texture vertices|texture faces)|"
        "Mesh '[^']*' has (a face|a texture face) with (vertex|texture vertex) [0-9]+ of [0-9]+|"
        "Mesh without vertices: '[^']*'|"
        "Internal error: no mesh info for mesh '[^']*')|"
        "[^:]*: Check: (Pos|Scale) key numbers don't match");
    return std::regex_match(error, kStated);
}

class ExampleScenesTest : public QSALoaderTest {};

} // namespace

TEST_F(ExampleScenesTest, EveryExampleIsASoundSceneUnderAllOptions)
{
    static constexpr uint32_t kOptions[] = {
        0,
        kLoadBumpMaps,
        kLoadNoTextures,
        kLoadSingleMipLevel | kLoadBumpMaps | kLoadVertexColors | kLoadSystemMemory,
    };
    for (const fs::path& path : ExampleScenes()) {
        for (const uint32_t options : kOptions) {
            EXPECT_EQ(RaisedBy([&] { loader.Load(scene, path.string().c_str(), options); }),
                      "no error")
                << path << ' ' << options;
            EXPECT_EQ(FaultsOf(scene), "") << path << ' ' << options;
        }
    }
}

TEST_F(ExampleScenesTest, TruncationsLoadOrEndInADocumentedError)
{
    for (const fs::path& path : ExampleScenes()) {
        const std::string text = ReadText(path);
        directory.Write("scene.qsa", text);
        int tried = 0;
        int loaded = 0;
        for (const size_t length : CutLengths(text.size())) {
            gLogEntries = kMaxLogEntries; // thousands of warnings are of no interest here
            fs::resize_file("scene.qsa", length);
            const std::string error =
                RaisedBy([&] { loader.Load(scene, "scene.qsa", kLoadNoTextures); });
            ++tried;
            if (error == "no error") {
                ++loaded;
                EXPECT_EQ(FaultsOf(scene, true), "") << path << ' ' << length;
            } else {
                EXPECT_TRUE(IsErrorOfACutText(error)) << path << ' ' << length << ' ' << error;
            }
        }
        EXPECT_GT(tried, 50) << path;
        EXPECT_GT(loaded, 0) << path;
    }
}

TEST_F(ExampleScenesTest, ChangedBytesLoadOrEndInAnError)
{
    std::mt19937 random(11);
    for (const fs::path& path : ExampleScenes()) {
        const std::string text = ReadText(path);
        // The beginning of a large scene is enough; its end is more of the same.
        const std::string part = text.substr(0, 40000);
        for (int round = 0; round < kChangedTexts; ++round) {
            std::string changed = part;
            const size_t changes = 1 + random() % 20;
            for (size_t i = 0; i < changes; ++i)
                changed[random() % changed.size()] = static_cast<char>(random());
            gLogEntries = kMaxLogEntries;
            const std::string error = LoadError(changed, kLoadNoTextures);
            if (error == "no error") {
                EXPECT_EQ(FaultsOf(scene, true), "") << path << ' ' << round;
            } else {
                EXPECT_NE(error, "") << path << ' ' << round;
            }
        }
    }
}

TEST_F(ExampleScenesTest, CompleteFileOfTheFormatGuideLoadsWithoutAWarning)
{
    const std::string guide = ReadText(SourcePath("docs/qsa-format.md"));
    const size_t head = guide.find("## A complete file");
    const size_t first = guide.find("*3DSMAX_QSAEXPORT", head);
    const size_t last = guide.find("```", first);
    ASSERT_NE(last, std::string::npos);
    Load(guide.substr(first, last - first));
    EXPECT_EQ(LogText(), "");
    ASSERT_EQ(scene.meshes.Count(), 1);
    EXPECT_EQ(Mesh(0).vertexCount, 4);
    EXPECT_EQ(Mesh(0).faceCount, 2);
    EXPECT_EQ(scene.activeCamera, 0);
    // The rows are a quarter turn about +z, as axis and angle are: no axis is mirrored.
    ExpectVec3(Mesh(0).mirror, 1, 1, 1);
}
