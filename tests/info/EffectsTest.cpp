#include "info/Report.h"

#include <gtest/gtest.h>

#include "tests/info/InfoTesting.h"

namespace {

class EffectsTest : public InfoTest {
protected:
    std::string Effects(const QsbFile& file)
    {
        return Printed(file,
                       [](LoadedScene& loaded, Output& output) { PrintEffects(loaded, output); });
    }
};

} // namespace

TEST_F(EffectsTest, AMissingEffectIsReportedForEachMaterial)
{
    QsbFile file = InfoBoat();
    file.scene.meshes.push_back(InfoTriangle("Mast"));
    for (QsbMesh& mesh : file.scene.meshes)
        mesh.materials[0].effect = "lost.fx";
    EXPECT_EQ(Effects(file), "scene.qsb\n"
                             "  Hull materials[0]: lost.fx: MISSING; drawn without the effect\n"
                             "  Mast materials[0]: lost.fx: MISSING; drawn without the effect\n");
}

TEST_F(EffectsTest, ASceneWithoutEffectsSaysSo)
{
    EXPECT_EQ(Effects(InfoBoat()), "scene.qsb\n  no material names an effect\n");
}

TEST_F(EffectsTest, AnEffectThatEndsAConversionIsReportedWithItsError)
{
    directory.Write("glow.fx", "Colour = 1;\n"); // not a valid effect text on either host
    QsbFile file = InfoBoat();
    file.scene.meshes[0].materials[0].effect = "glow.fx";
    const std::string start = "scene.qsb\n  Hull materials[0]: glow.fx: ends a conversion: Could "
                              "not compile effect from file 'glow.fx': '";
    EXPECT_EQ(Effects(file).substr(0, start.size()), start);
}
