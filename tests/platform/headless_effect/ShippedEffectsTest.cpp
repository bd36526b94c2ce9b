// The compiled effects of the examples are those of their texts.

#include "platform/EffectCompiler.h"
#include "tests/support/TreePaths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

std::string Contents(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace

TEST(ShippedEffects, AreCompiledFromTheirTexts)
{
    size_t count = 0;
    for (const auto& entry : fs::directory_iterator(SourcePath("examples/effects"))) {
        if (entry.path().extension() != ".fx")
            continue;
        ++count;
        std::string compiled;
        EXPECT_EQ(CompileEffect(entry.path().string(), compiled), "");
        const fs::path shipped = fs::path(entry.path()).replace_extension(".fxo");
        EXPECT_TRUE(Contents(shipped) == compiled)
            << shipped << " differs; tools/make-examples writes it anew";
    }
    EXPECT_GE(count, 9u);
}
