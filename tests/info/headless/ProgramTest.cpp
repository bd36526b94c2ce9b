// What only a native process can do: have other programs read the output.

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/info/InfoTesting.h"
#include "tests/support/Emulator.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

namespace {

namespace fs = std::filesystem;

int Shell(const std::string& command)
{
    const int result = std::system(command.c_str());
    return WIFEXITED(result) ? WEXITSTATUS(result) : -1;
}

const std::string kProgram = EmulatorCommand() + " " + InfoProgramPath();

} // namespace

TEST(Program, JsonIsReadByAnotherProgram)
{
    if (Shell("python3 -c 'import json' 2>/dev/null") != 0)
        GTEST_SKIP() << "python3 is not there";
    const ScratchDirectory scratch;
    std::string every;
    for (int code = 1; code < 256; ++code)
        every += static_cast<char>(code);
    QsbFile file = InfoBoat();
    file.scene.meshes[0].object.name = every;
    file.scene.objects[0].name = "B\xE4r";
    file.scene.clip.radius = NAN;
    scratch.Write("odd.qsb", MakeQsb(file).bytes);
    // Constants such as NaN are not JSON: the reader is set to fail on them.
    scratch.Write(
        "read.py",
        "import json, sys\n"
        "d = json.load(open(sys.argv[1], encoding='utf-8'), parse_constant=lambda c: 1/0)\n"
        "assert d['qsbinfo'] == 1 and d['file']['version'] == 106\n"
        "assert d['scene']['radius'] is None\n"
        "assert d['objects'][0]['name'] == 'B\\u00e4r'\n"
        "name = bytes(range(1, 256))\n"
        "expected = ''.join(bytes([b]).decode('cp1252') if b not in\n"
        "    (0x81, 0x8d, 0x8f, 0x90, 0x9d) else chr(b) for b in name)\n"
        "assert d['meshes'][0]['name'] == expected\n");
    ASSERT_EQ(Shell(kProgram + " --json odd.qsb > odd.json"), 0);
    EXPECT_EQ(Shell("python3 read.py odd.json"), 0);

    for (const auto& entry : fs::directory_iterator(SourcePath("examples"))) {
        if (entry.path().extension() != ".qsa")
            continue;
        ASSERT_EQ(Shell(kProgram + " --json '" + entry.path().string() + "' > out.json"), 0);
        EXPECT_EQ(Shell("python3 -c 'import json; json.load(open(\"out.json\"), "
                        "parse_constant=lambda c: 1/0)'"),
                  0)
            << entry.path();
    }
}

TEST(Program, AFullDiskIsTrouble)
{
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full";
    EXPECT_EQ(Shell(kProgram + " --version > /dev/full 2>/dev/null"), 2);
}

TEST(Program, NeedsNoDisplayAndNoHome)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsb", MakeQsb(InfoBoat()).bytes);
    EXPECT_EQ(Shell("env -i " + kProgram + " --check a.qsb > out.txt"), 0);
    EXPECT_EQ(scratch.Read("out.txt"), "a.qsb: sound\n");
}

#ifndef __SANITIZE_ADDRESS__ // which reserves a huge address space

TEST(Program, SceneThatDoesNotFitIsNamed)
{
    if (RunsUnderAnEmulator())
        GTEST_SKIP() << "needs a memory limit";
    const ScratchDirectory scratch;
    std::string text = "*3DSMAX_QSAEXPORT 200\n*MATERIAL_LIST {\n";
    for (int i = 0; i < 500000; ++i)
        text += "*MATERIAL " + std::to_string(i) + " {}\n";
    scratch.Write("large.qsa", text + "}\n");
    EXPECT_EQ(Shell("ulimit -v 150000; " + kProgram + " large.qsa 2> told"), 2);
    EXPECT_EQ(scratch.Read("told"), "qsbinfo: large.qsa: Not enough memory for the scene\n");
}

#endif
