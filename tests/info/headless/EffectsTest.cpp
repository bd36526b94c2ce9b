// Techniques of effects in text form, and this host's reasons to reject them.

#include "info/Report.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "tests/info/InfoTesting.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TreePaths.h"

namespace {

class EffectTechniques : public InfoTest {
protected:
    /// The effect's report for a boat whose hull has it; the effect is beside the scene in the
    /// folder "deck".
    std::string Told(const std::string& effect)
    {
        QsbFile file = InfoBoat();
        file.scene.meshes[0].materials[0].effect = "glow.fx";
        directory.Write("deck/glow.fx", effect);
        LoadedScene loaded;
        LoadBytes(loaded, MakeQsb(file).bytes, "deck/boat.qsb");
        Output output;
        testing::internal::CaptureStderr();
        PrintEffects(loaded, output);
        testing::internal::GetCapturedStderr();
        return output.Text();
    }
    static constexpr const char* kHead = "deck/boat.qsb\n  Hull materials[0]: glow.fx: ";
};

} // namespace

TEST_F(EffectTechniques, TheFirstOneIsChosenWithoutAReason)
{
    EXPECT_EQ(Told("technique one { } technique two { }"),
              std::string(kHead) + "technique 1 \"one\" of 2\n");
}

TEST_F(EffectTechniques, EachOneBeforeTheChosenOneHasItsReason)
{
    EXPECT_EQ(
        Told("technique waves { pass {\nPixelShader = asm { ps.1.1 }; } }\n"
             "technique {\npass { CullMode = 9; } }\n"
             "technique plain { } technique spare { }"),
        std::string(kHead) +
            "technique 3 \"plain\" of 4\n"
            "      not technique 1 \"waves\": deck/glow.fx(2,21): r0, the result, is not "
            "written\n"
            "      not technique 2: deck/glow.fx(4,1): the device refuses the pass because of "
            "D3DRS_CULLMODE(9)\n");
}

TEST_F(EffectTechniques, WithoutAUsableOneAllAreReported)
{
    EXPECT_EQ(
        Told("technique a { pass {\nStateBlock = <s>; } }"),
        std::string(kHead) +
            "no technique; drawn without the effect\n"
            "      not technique 1 \"a\": deck/glow.fx(2,1): this host does not have the state "
            "'StateBlock'\n");
}

TEST_F(EffectTechniques, TheProgramPrintsThemToStandardOutput)
{
    directory.Write("glow.fx", "technique one { }");
    QsbFile file = InfoBoat();
    file.scene.meshes[0].materials[0].effect = "glow.fx";
    directory.Write("boat.qsb", MakeQsb(file).bytes);
    const ProgramRun run = RunProgramFile(InfoProgramPath(), {"--effects", "boat.qsb"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "boat.qsb\n  Hull materials[0]: glow.fx: technique 1 \"one\" of 1\n");
    EXPECT_EQ(run.err, "");
    EXPECT_FALSE(directory.Has("logfile.txt"));
}
