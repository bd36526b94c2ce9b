#include "scene/KRE_SceneSettings.h"

#include <gtest/gtest.h>

TEST(KRE_SceneSettings, StartsWithItsDefaults)
{
    const KRE_SceneSettings settings;
    const struct {
        const char* what;
        int32_t actual, expected;
    } cases[] = {
        {"clearBackground", settings.clearBackground, 0},
        {"mirrorView", settings.mirrorView, 0},
        {"reserved", settings.reserved, 0},
        {"showObjects", settings.showObjects, -2},
        {"showLights", settings.showLights, -2},
        {"useAmbient", settings.useAmbient, 0},
        {"useLights", settings.useLights, 1},
        {"useFog", settings.useFog, 0},
        {"sortTransparent", settings.sortTransparent, 1},
        {"showHierarchy", settings.showHierarchy, 0},
        {"fogColor", static_cast<int32_t>(settings.fogColor), 0},
        {"fogMode", settings.fogMode, 1},
        {"fogPerVertex", settings.fogPerVertex, 1},
        {"drawTransparentOnly", settings.drawTransparentOnly, 1},
        {"disableLightsAfter", settings.disableLightsAfter, 1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.actual, c.expected) << c.what;
    EXPECT_EQ(settings.fogStart, 0.0f);
    EXPECT_EQ(settings.fogEnd, 1.0f);
    EXPECT_EQ(settings.fogDensity, 0.5f);
}
