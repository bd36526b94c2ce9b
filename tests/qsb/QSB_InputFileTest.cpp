#include "qsb/QSB_InputFile.h"

#include <gtest/gtest.h>

TEST(QSB_InputFile, StartsAtTheCurrentVersionWithNothingAskedFor)
{
    const QSB_InputFile file;
    EXPECT_EQ(file.version, kQsbCurrent);
    EXPECT_FALSE(file.cutToWindow);
    EXPECT_EQ(file.windowStart, 0.0f);
    EXPECT_EQ(file.windowEnd, 0.0f);
    EXPECT_TRUE(file.directory.IsEmpty());
    EXPECT_FALSE(file.singleMipLevel);
    EXPECT_FALSE(file.bumpMaps);
    EXPECT_FALSE(file.vertexColors);
    EXPECT_EQ(file.object, nullptr);
    EXPECT_EQ(file.material, -1);
}
