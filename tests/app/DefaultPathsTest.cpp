#include "gfx/DefaultPaths.h"

#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/ScratchDirectory.h"

#include <gtest/gtest.h>
#include <string>

namespace {

class DefaultPaths : public testing::Test {
protected:
    const ScratchDirectory scratch;
    const ScratchEngine engine{""};
};

} // namespace

TEST_F(DefaultPaths, ValuesOfTheRegistryReachTheEngine)
{
    const RegistryValues registry(
        {{"DefaultTexturePath", "C:\\Maps"}, {"DefaultBasePath", "D:\\Base"}});
    ReadDefaultPaths();
    EXPECT_STREQ(gGfx->GetDefaultTexturePath().c_str(), "C:\\Maps");
    EXPECT_STREQ(gGfx->GetDefaultBasePath().c_str(), "D:\\Base");
}

TEST_F(DefaultPaths, MissingValueLeavesTheEnginesUnchanged)
{
    gGfx->SetDefaultTexturePath("as it was");
    gGfx->SetDefaultBasePath("as it was");
    {
        const RegistryValues registry({{"DefaultBasePath", std::string("D:\\Base")}});
        ReadDefaultPaths();
        EXPECT_STREQ(gGfx->GetDefaultTexturePath().c_str(), "as it was");
        EXPECT_STREQ(gGfx->GetDefaultBasePath().c_str(), "D:\\Base");
    }
    const RegistryValues none({});
    ReadDefaultPaths();
    EXPECT_STREQ(gGfx->GetDefaultBasePath().c_str(), "D:\\Base");
    EXPECT_STREQ(gDefaultTexturePath, "");
    EXPECT_STREQ(gDefaultBasePath, "");
}
