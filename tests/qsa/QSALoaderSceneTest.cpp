#include "tests/qsa/QSATesting.h"

namespace {

std::string Scene(const std::string& inside)
{
    return "*SCENE {\n" + inside + "\n}\n";
}

using QSALoaderSceneTest = QSALoaderTest;

} // namespace

TEST_F(QSALoaderSceneTest, SceneColorsAreCutToBytesAndKeepTheirAlpha)
{
    // 0.5 * 255 is 127.5, truncated to 127 (0x7F); 0.999 * 255 is 254.7.
    Load(Scene("*SCENE_BACKGROUND_STATIC 0.5 1 0.999 *SCENE_AMBIENT_STATIC 0,0.25,0.5"));
    EXPECT_EQ(scene.backgroundColor, 0xFF7FFFFEu);
    EXPECT_EQ(scene.ambientColor, 0xFF003F7Fu); // 63.75 and 127.5
}

TEST_F(QSALoaderSceneTest, QuirkColorsOutsideTheirRangeWrap)
{
    // 2 * 255 = 510 = 0x1FE; -1 * 255 = -255 = ...FF01; values beyond an int are clamped to its
    // range.
    Load(Scene("*SCENE_BACKGROUND_STATIC 2 -1 1e30"));
    EXPECT_EQ(scene.backgroundColor, 0xFFFE01FFu);
    Load(Scene("*SCENE_BACKGROUND_STATIC nan inf -inf"));
    EXPECT_EQ(scene.backgroundColor, 0xFF00FF00u);
}

TEST_F(QSALoaderSceneTest, TimesFollowTheSceneBlock)
{
    Load(
        Scene("*SCENE_FIRSTFRAME 10 *SCENE_LASTFRAME 60 *SCENE_FRAMESPEED 25 "
              "*SCENE_TICKSPERFRAME 192 *SCENE_SOUNDFILE \"a b.wav\" *SCENE_SCRIPTFILE \"c.txt\""));
    EXPECT_FLOAT_EQ(loader.Time().SecondsPerTick(), 1.0f / 4800.0f); // 192 * 25
    EXPECT_FLOAT_EQ(loader.Time().Duration(), 2.0f);                 // 50 frames
    EXPECT_EQ(loader.header.firstFrame, 10.0f);
    EXPECT_EQ(loader.header.lastFrame, 60.0f);
    EXPECT_EQ(loader.header.frameSpeed, 25.0f);
    EXPECT_STREQ(loader.header.soundFile.c_str(), "a b.wav");
    EXPECT_STREQ(loader.header.scriptFile.c_str(), "c.txt");
    EXPECT_FLOAT_EQ(scene.loopEnd, 2.0f);
}

TEST_F(QSALoaderSceneTest, WithoutASceneBlockTheDefaultsGiveTheTimes)
{
    Load(Helper("*NODE_NAME \"h\""));
    EXPECT_FLOAT_EQ(loader.Time().SecondsPerTick(), 1.0f / 4800.0f); // 160 * 30
    EXPECT_FLOAT_EQ(loader.Time().Duration(), 100.0f / 30.0f);
    EXPECT_FLOAT_EQ(Object(0).loopEnd, 100.0f / 30.0f);
}

TEST_F(QSALoaderSceneTest, SceneWithoutSpeedStandsStillWithOneWarning)
{
    const std::string keys =
        Helper("*NODE_NAME \"h\" *TM_ANIMATION { *CONTROL_POS_TRACK { "
               "*CONTROL_POS_SAMPLE 160 1 2 3 *CONTROL_POS_SAMPLE 320 4 5 6 } }");
    Load(Scene("*SCENE_FRAMESPEED 0") + keys);
    EXPECT_EQ(loader.Time().SecondsPerTick(), 0.0f);
    EXPECT_EQ(loader.Time().Duration(), 0.0f);
    EXPECT_EQ(Object(0).posKeys.Head()->time, 0.0f);
    EXPECT_EQ(Warnings("Scene without speed: 0 frames a second, 160 ticks a frame"), 1);
    Load(Scene("*SCENE_TICKSPERFRAME 0") + keys);
    EXPECT_EQ(loader.Time().SecondsPerTick(), 0.0f);
    EXPECT_EQ(loader.Time().Duration(), 0.0f);
    EXPECT_EQ(Warnings("Scene without speed: 30 frames a second, 0 ticks a frame"), 1);
}

TEST_F(QSALoaderSceneTest, SceneIsLeftAtItsFirstFrameAndWithoutSpeedAtItsStart)
{
    Load(Scene("*SCENE_FIRSTFRAME 60") + Helper("*NODE_NAME \"h\""));
    EXPECT_EQ(Object(0).lastTime, 2.0) << "60 frames at 30 a second";
    Load(Scene("*SCENE_FIRSTFRAME 60 *SCENE_FRAMESPEED 0") + Helper("*NODE_NAME \"h\""));
    EXPECT_EQ(Object(0).lastTime, 0.0);
}

TEST_F(QSALoaderSceneTest, LengthOfTheWholeRangeOfFramesDoesNotOverflow)
{
    Load(Scene("*SCENE_FIRSTFRAME -2147483648 *SCENE_LASTFRAME 2147483647"));
    EXPECT_FLOAT_EQ(loader.Time().Duration(), 4294967295.0f / 30.0f);
}

TEST_F(QSALoaderSceneTest, FileThatEndsInTheSceneBlockKeepsWhatWasRead)
{
    Load("*SCENE { *SCENE_LASTFRAME 30 ");
    EXPECT_FLOAT_EQ(loader.Time().Duration(), 1.0f);
    EXPECT_EQ(AllWarnings().size(), 1u);
}

TEST_F(QSALoaderSceneTest, EnvironmentIsLoadedAndItsNameKept)
{
    directory.Write("sky.bmp", OnePixelBitmap());
    Load(Scene("*SCENE_ENVMAP { *BITMAP \"sky.bmp\" }"));
    EXPECT_TRUE(scene.backgroundTexture.IsValid());
    EXPECT_STREQ(scene.backgroundTexture.slotNames[0].c_str(), "sky.bmp");
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
}

TEST_F(QSALoaderSceneTest, EnvironmentOfAnotherMachineIsTakenFromBesideTheScene)
{
    directory.Write("sky.bmp", OnePixelBitmap());
    Load(Scene("*SCENE_ENVMAP { *BITMAP \"Q:\\art\\sky.bmp\" }"));
    EXPECT_TRUE(scene.backgroundTexture.IsValid());
    EXPECT_STREQ(scene.backgroundTexture.slotNames[0].c_str(), "Q:\\art\\sky.bmp");
    EXPECT_THAT(LogText(), testing::HasSubstr("Texture 'Q:\\art\\sky.bmp' is not in its place"));
}

TEST_F(QSALoaderSceneTest, MissingEnvironmentWarnsAndKeepsItsName)
{
    Load(Scene("*SCENE_ENVMAP { *BITMAP \"none.bmp\" }"));
    EXPECT_FALSE(scene.backgroundTexture.IsValid());
    EXPECT_STREQ(scene.backgroundTexture.slotNames[0].c_str(), "none.bmp");
    EXPECT_EQ(Warnings("Can not open environment texture file none.bmp"), 1);
}

TEST_F(QSALoaderSceneTest, EachEnvironmentBlockLooksForItsLastName)
{
    directory.Write("sky.bmp", OnePixelBitmap());
    Load(Scene("*SCENE_ENVMAP { *BITMAP \"sky.bmp\" } "
               "*SCENE_ENVMAP { *BITMAP \"first.bmp\" *BITMAP \"second.bmp\" } "
               "*SCENE_ENVMAP { *BITMAP unquoted } *SCENE_ENVMAP { } "
               "*SCENE_ENVMAP { *BITMAP \"third.bmp\" }"));
    EXPECT_TRUE(scene.backgroundTexture.IsValid()) << "the picture that was found stays";
    EXPECT_STREQ(scene.backgroundTexture.slotNames[0].c_str(), "third.bmp");
    EXPECT_EQ(Warnings("Can not open environment texture file first.bmp"), 0);
    EXPECT_EQ(Warnings("Can not open environment texture file second.bmp"), 1);
    EXPECT_EQ(Warnings("Can not open environment texture file third.bmp"), 1);
}

TEST_F(QSALoaderSceneTest, EmptyEnvironmentNameIsSearchedForAndNotFound)
{
    Load(Scene("*SCENE_ENVMAP { *BITMAP \"\" }"));
    EXPECT_EQ(Warnings("Can not open environment texture file "), 1);
}

TEST_F(QSALoaderSceneTest, EnvironmentIsNotSearchedForWithoutTextures)
{
    Load(Scene("*SCENE_ENVMAP { *BITMAP \"none.bmp\" }"), kLoadNoTextures);
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
}

TEST_F(QSALoaderSceneTest, FogBlockSwitchesFogOnAndItsColorBecomesTheBackground)
{
    Load("*ATMOSPHERIC { *OTHER { } *STDFOG { *FOG_COLOR 1 0.5 0 *FOG_NEAR 5 *FOG_FAR 6 "
         "*FOG_DENSITY 7 } }");
    EXPECT_EQ(scene.settings.useFog, 1);
    EXPECT_EQ(scene.settings.fogColor, 0xFFFF7F00u);
    EXPECT_EQ(scene.backgroundColor, 0xFFFF7F00u);
    EXPECT_EQ(scene.settings.fogDensity, 0.008f);
    EXPECT_EQ(scene.settings.fogStart, 0.0f); // near and far are not part of the import
    EXPECT_EQ(scene.settings.fogEnd, 1.0f);
}

TEST_F(QSALoaderSceneTest, FogIsOnAsSoonAsItsBlockOpens)
{
    Load("*ATMOSPHERIC { *STDFOG {");
    EXPECT_EQ(scene.settings.useFog, 1);
    EXPECT_EQ(scene.backgroundColor, 0u); // the colour was never given
}
