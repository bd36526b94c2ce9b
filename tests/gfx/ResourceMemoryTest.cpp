// Files that a scene uses, with each allocation of their load failing once.

#include "tests/gfx/EffectLoad.h"
#include "tests/gfx/TextTest.h"
#include "tests/gfx/TextureEngine.h"
#include "tests/support/MemoryShortage.h"

#include <set>

using FrameListMemory = TextureEngine;
using EffectMemory = EffectLoad;
using TextMemory = TextTest;

TEST_F(FrameListMemory, ListThatDoesNotFitIsNamed)
{
    directory.Write("red.bmp", PlainBmp(4, 4, 0xFF0000));
    directory.Write("flash.ifl", "red.bmp\nred.bmp 2\nred.bmp\n");
    const auto load = [this] {
        KRE_Texture texture;
        Load(texture, "flash.ifl");
    };
    load(); // allocates what later loads reuse
    const int64_t needed = AllocationsOf(load);
    std::set<std::string> errors;
    for (int64_t before = 0; before < needed; ++before)
        errors.insert(RunShortOfMemory(before, 1, load).error);
    EXPECT_EQ(errors.count("Out of memory for resource 'flash.ifl'"), 1u);
}

TEST_F(EffectMemory, EffectThatDoesNotFitIsNamed)
{
    file.AddTechnique();
    const auto load = [this] {
        Load(effect);
        effect.Free();
    };
    load();
    const int64_t needed = AllocationsOf(load);
    std::set<std::string> errors;
    for (int64_t before = 0; before < needed; ++before) {
        errors.insert(RunShortOfMemory(before, 1, load).error);
        effect.Free();
    }
    EXPECT_EQ(errors.count("Out of memory for resource 'one.fx'"), 1u);
}

TEST_F(TextMemory, TextThatDoesNotFitThrows)
{
    const auto lay = [this] { Lay("a\nlonger line of text"); };
    const int64_t needed = AllocationsOf(lay);
    int64_t failed = 0;
    for (int64_t before = 0; before < needed; ++before) {
        try {
            RunShortOfMemory(before, 1, lay);
        } catch (const std::bad_alloc&) {
            ++failed;
        }
    }
    EXPECT_GT(failed, 3) << "options, lines and pieces";
}
