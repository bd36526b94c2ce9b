#include "app/TargetName.h"

#include <gtest/gtest.h>
#include <string>

TEST(TargetName, ReplacesTheLastExtensionOnly)
{
    static const struct {
        const char* what;
        const char* name;
        const char* expected;
    } cases[] = {
        {"plain", "boat.qsa", "boat.qsb"},
        {"a name without a dot", "scene", "scene.qsb"},
        {"a leading dot is no extension", ".hidden", ".hidden.qsb"},
        {"only the last extension goes", "a.b.qsa", "a.b.qsb"},
        {"a leading dot and an extension", ".boat.qsa", ".boat.qsb"},
        {"a dot at the end", "boat.", "boat.qsb"},
        {"a target is its own target", "x.qsb", "x.qsb"},
        {"empty", "", ".qsb"},
    };
    for (const auto& c : cases)
        EXPECT_STREQ(MakeTargetName(c.name).c_str(), c.expected) << c.what;
}

TEST(TargetName, KeepsNamesOfAnyLength)
{
    const std::string stem(500, 'n');
    EXPECT_EQ(MakeTargetName((stem + ".qsa").c_str()).c_str(), stem + ".qsb");
}
