#include <fstream>
#include <sstream>

#include "qsa/QSA_SceneHeader.h"
#include "tests/qsb/SceneFileTest.h"
#include "tests/support/TreePaths.h"

namespace {

using FormatDocumentTest = SceneFileTest;

/// The bytes of a dump in the format's description: lines of an offset and up to 16 bytes, which
/// end where the remark starts in column 54.
std::string DumpOf(const std::string& name)
{
    std::ifstream document(SourcePath("docs/qsb-format.md"));
    std::string bytes;
    std::string line;
    bool isInside = false;
    while (std::getline(document, line)) {
        if (line.rfind("```", 0) == 0) {
            isInside = line.find("```" + name) == 0;
            continue;
        }
        if (!isInside || line.empty() || line[0] == ' ')
            continue;
        std::istringstream text(line.substr(0, 53));
        size_t offset = 0;
        text >> std::hex >> offset;
        EXPECT_EQ(offset, bytes.size()) << line;
        for (int byte = 0; text >> byte;)
            bytes += static_cast<char>(byte);
    }
    return bytes;
}

} // namespace

TEST_F(FormatDocumentTest, TheWholeFileIsWhatTheProgramReadsAndWrites)
{
    const std::string dump = DumpOf("qsb-file");
    ASSERT_GT(dump.size(), 500u);
    directory.Write("boat.qsa", dump); // the dump's scene has this name
    KRE_3dScene scene;
    gGfx->LoadScene(scene, "boat.qsa", 0);
    EXPECT_EQ(CheckScene(scene), "");
    EXPECT_EQ(QsbDifference(Saved(scene), dump), "");

    // One example of each kind of remark.
    EXPECT_STREQ(gGfx->SceneHeader().soundFile.c_str(), "waves.wav");
    EXPECT_EQ(scene.backgroundColor, 0xFF204060u);
    ASSERT_EQ(scene.objects.Count(), 1);
    const KRE_3dObject& mast = *scene.objects.Get(0);
    EXPECT_STREQ(mast.name.c_str(), "Mast");
    EXPECT_EQ(mast.objectKind, kObjectBone);
    EXPECT_EQ(mast.posKeyCount, 2);
    EXPECT_EQ(mast.posKeys.Tail()->value, D3DXVECTOR3(1, 0, 9));
}

TEST_F(FormatDocumentTest, TheGeometryIsWhatTheProgramReadsAndWrites)
{
    const std::string dump = DumpOf("qsb-geometry");
    QsbFile file;
    file.scene.object.name = "scene.qsb"; // the path of the load: a save gives the same bytes
    file.scene.meshes = {QsbTriangle("Hull")};
    QsbMesh& mesh = file.scene.meshes[0];
    mesh.fvf = 0x1118;
    mesh.bones.resize(2);
    QsbImage image = MakeQsb(file);
    const size_t from = image.at.at("mesh0.vertex count");
    const size_t to = image.at.at("mesh0.user tag");
    ASSERT_EQ(dump.size(), to - from);
    const std::string bytes = image.With("mesh0.vertex count", dump);
    EXPECT_EQ(QsbDifference(Resaved(bytes), bytes), "");
}
