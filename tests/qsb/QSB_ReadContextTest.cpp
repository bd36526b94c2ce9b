#include "qsb/QSB_ReadContext.h"

#include <gtest/gtest.h>

TEST(QSB_ReadContext, StartsAtTheCurrentVersionWithNothingAskedFor)
{
    const QSB_ReadContext context;
    EXPECT_EQ(context.version, kQsbCurrent);
    EXPECT_FALSE(context.cutToWindow);
    EXPECT_EQ(context.windowStart, 0.0f);
    EXPECT_EQ(context.windowEnd, 0.0f);
    EXPECT_TRUE(context.directory.IsEmpty());
    EXPECT_FALSE(context.singleMipLevel);
    EXPECT_FALSE(context.bumpMaps);
    EXPECT_FALSE(context.vertexColors);
    EXPECT_EQ(context.object, nullptr);
    EXPECT_EQ(context.material, -1);
}
