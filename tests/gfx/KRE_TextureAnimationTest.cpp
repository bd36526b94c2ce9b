#include "gfx/KRE_Texture.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using Ani = KRE_TextMatrixAni;

KRE_Texture& WithFrames(KRE_Texture& texture, int32_t count, float period, float start,
                        int32_t mode)
{
    texture.CreateSequence(count, false);
    texture.SetSequenceTiming(period, start, mode);
    return texture;
}

int32_t FrameAt(KRE_Texture& texture, float time)
{
    texture.Evaluate(time);
    return texture.frameIndex;
}

/// Where a texture matrix sends the coordinates (u, v, 1).
std::pair<float, float> Apply(const D3DMATRIX& m, float u, float v)
{
    return {u * m._11 + v * m._21 + m._31, u * m._12 + v * m._22 + m._32};
}

} // namespace

TEST(KRE_TextMatrixAni, TracksWithoutKeysStayAtTheirConstants)
{
    Ani ani;
    const float expected[] = {0.0f, 0.0f, 1.0f, 1.0f, 0.0f};
    for (int32_t i = 0; i < Ani::kTrackCount; ++i)
        EXPECT_EQ(ani.Evaluate(static_cast<Ani::Track>(i), 5.0f), expected[i]) << i;
    ani.constants[Ani::kAngle] = 3.0f;
    EXPECT_EQ(ani.Evaluate(Ani::kAngle, 5.0f), 3.0f);
}

TEST(KRE_TextMatrixAni, TracksWithKeysLeaveTheirConstants)
{
    Ani ani;
    ani.constants[Ani::kTileV] = 9.0f;
    ani.tracks[Ani::kTileV].SetKeyCount(2);
    ani.tracks[Ani::kTileV].interpolation = 0;
    ani.tracks[Ani::kTileV].Key(0) = {0.0f, 2.0f, 0.0f, 0.0f};
    ani.tracks[Ani::kTileV].Key(1) = {1.0f, 4.0f, 0.0f, 0.0f};
    EXPECT_EQ(ani.Evaluate(Ani::kTileV, 0.5f), 3.0f);
}

TEST(SetMatrixFromTrack, ValuesThatChangeNothingGiveNoMatrix)
{
    KRE_Texture texture;
    texture.SetMatrixFromTrack(0.5f, 0.0f, 1.0f, 1.0f, 0.0f);
    EXPECT_EQ(texture.slotMatrixSet[0], 1);
    texture.SetMatrixFromTrack(0.0f, 0.0f, 1.0f, 1.0f, 0.0f);
    EXPECT_EQ(texture.slotMatrixSet[0], 0);
}

TEST(SetMatrixFromTrack, IsTranslationThenRotationThenScalingAboutTheMiddle)
{
    // By hand for offset (0.25, 0.5), tiling (2, 4), angle 0: the translation (-0.75, 0) times the
    // tiling is (-1.5, 0), plus 0.5: (-1, 0.5).
    KRE_Texture texture;
    texture.SetMatrixFromTrack(0.25f, 0.5f, 2.0f, 4.0f, 0.0f);
    const D3DMATRIX& m = texture.slotMatrices[0];
    EXPECT_EQ(m._11, 2.0f);
    EXPECT_EQ(m._12, 0.0f);
    EXPECT_EQ(m._21, 0.0f);
    EXPECT_EQ(m._22, 4.0f);
    EXPECT_EQ(m._31, -1.0f);
    EXPECT_EQ(m._32, 0.5f);
    EXPECT_EQ(m._33, 1.0f);
    EXPECT_EQ(m._41, 0.0f);
    EXPECT_EQ(m._42, 0.0f);
    EXPECT_EQ(m._43, 0.0f);
    EXPECT_EQ(m._44, 1.0f);
    EXPECT_EQ(m._13, 0.0f);
    EXPECT_EQ(m._14, 0.0f);
}

TEST(SetMatrixFromTrack, TurnsByMinusTheAngle)
{
    // A quarter turn by -90 degrees sends (x, y) to (y, -x). The corner (1, 0.5) is at (0.5, 0)
    // from the centre and goes to (0, -0.5), which is the corner (0.5, 0).
    KRE_Texture texture;
    texture.SetMatrixFromTrack(0.0f, 0.0f, 1.0f, 1.0f, 1.57079633f);
    const auto [u, v] = Apply(texture.slotMatrices[0], 1.0f, 0.5f);
    EXPECT_NEAR(u, 0.5f, 1e-6f);
    EXPECT_NEAR(v, 0.0f, 1e-6f);
}

TEST(SetMatrixFromTrack, AgreesWithTheSameStepsOnAPoint)
{
    // The steps one by one in double precision, for several coordinates.
    const double offsetU = 0.3, offsetV = -0.2, tileU = 1.5, tileV = 0.75, angle = 0.6;
    KRE_Texture texture;
    texture.SetMatrixFromTrack(0.3f, -0.2f, 1.5f, 0.75f, 0.6f);
    for (const double u : {-1.0, 0.0, 0.3, 2.0}) {
        for (const double v : {-0.5, 0.0, 1.0}) {
            const double x = u - 0.5 - offsetU;
            const double y = v + offsetV - 0.5;
            const double turnedX = x * std::cos(-angle) - y * std::sin(-angle);
            const double turnedY = x * std::sin(-angle) + y * std::cos(-angle);
            const auto [atU, atV] =
                Apply(texture.slotMatrices[0], static_cast<float>(u), static_cast<float>(v));
            EXPECT_NEAR(atU, turnedX * tileU + 0.5, 1e-6);
            EXPECT_NEAR(atV, turnedY * tileV + 0.5, 1e-6);
        }
    }
}

TEST(TextureEvaluate, SetsTheMatrixOfTheCurrentSlotOnly)
{
    KRE_Texture texture;
    for (Ani& ani : texture.matrixAni)
        ani.constants[Ani::kTileU] = 2.0f;
    texture.SelectStage(1);
    texture.Evaluate(3.0f);
    EXPECT_EQ(texture.slotMatrixSet[0], 0);
    EXPECT_EQ(texture.slotMatrixSet[1], 1);
    EXPECT_EQ(texture.slotMatrixSet[2], 0);
    EXPECT_EQ(texture.slotMatrices[1]._11, 2.0f);
    EXPECT_EQ(texture.currentTime, 3.0f);
}

// The defaults of all tracks mean no matrix, whether or not a slot has tracks.
TEST(TextureEvaluate, SlotWithoutAnimationHasNoMatrix)
{
    KRE_Texture texture;
    texture.slotMatrixSet[0] = 1;
    texture.Evaluate(0.0f);
    EXPECT_EQ(texture.slotMatrixSet[0], 0);
    EXPECT_FALSE(texture.matrixAni);
    texture.matrixAni[2].constants[Ani::kTileU] = 3.0f;
    texture.slotMatrixSet[0] = 1;
    texture.Evaluate(0.0f);
    EXPECT_EQ(texture.slotMatrixSet[0], 0);
    KRE_SlotAnimations copy = texture.matrixAni;
    EXPECT_EQ(copy[2].constants[Ani::kTileU], 3.0f);
    copy = KRE_SlotAnimations();
    EXPECT_FALSE(copy);
}

TEST(TextureEvaluate, SetsAllFourMatricesOfASequence)
{
    KRE_Texture texture;
    texture.SelectStage(2); // whichever slot was current before there was a sequence
    WithFrames(texture, 2, 1.0f, 0.0f, kSequenceLoop);
    ASSERT_EQ(texture.currentSlot, 2);
    for (int32_t i = 0; i < 4; ++i)
        texture.matrixAni[i].constants[Ani::kTileU] = static_cast<float>(i + 2);
    texture.Evaluate(0.0f);
    for (int32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(texture.slotMatrixSet[i], 1) << i;
        EXPECT_EQ(texture.slotMatrices[i]._11, static_cast<float>(i + 2)) << i;
    }
}

TEST(TextureEvaluate, ChoosesTheFrameByTheMode)
{
    // Four frames of half a second from 1 s on.
    static const struct {
        const char* what;
        int32_t mode;
        float time;
        int32_t expected;
    } cases[] = {
        {"loop, start", 0, 1.0f, 0},
        {"loop, third frame", 0, 2.25f, 2},
        {"loop, second round", 0, 3.5f, 1},
        {"loop, less than a frame before the start", 0, 0.75f, 0}, // int(-0.5) is 0
        {"loop, a frame before the start", 0, 0.5f, 3},            // int(-1)
        {"loop, long before the start", 0, -3.5f, 3},              // int(-9) is -9, -9 + 12
        {"unknown mode loops", 7, 3.5f, 1},
        {"negative mode loops", -1, 3.5f, 1},
        {"ping-pong, first round", 1, 2.75f, 3},
        {"ping-pong, second round starts at the end", 1, 3.0f, 3},
        {"ping-pong, second round", 1, 3.5f, 2},
        {"ping-pong, end of the second round", 1, 4.75f, 0},
        {"ping-pong, third round", 1, 5.5f, 1},
        // -2.5 s: 1 whole round below, rest -0.5, int(-1) wraps to 3, odd: 4 - 3 - 1.
        {"ping-pong, before the start", 1, -1.5f, 0},
        {"once, before the start", 2, 0.0f, 0},
        {"once, second frame", 2, 1.5f, 1},
        {"once, held at the end", 2, 99.0f, 3},
    };
    for (const auto& c : cases) {
        KRE_Texture texture;
        WithFrames(texture, 4, 0.5f, 1.0f, c.mode);
        EXPECT_EQ(FrameAt(texture, c.time), c.expected) << c.what;
    }
}

TEST(TextureEvaluate, OneFrameInPingPongIsAlwaysShown)
{
    KRE_Texture texture;
    WithFrames(texture, 1, 0.5f, 0.0f, kSequencePingPong);
    for (const float time : {-1.0f, 0.0f, 0.5f, 7.0f})
        EXPECT_EQ(FrameAt(texture, time), 0) << time;
}

TEST(TextureEvaluate, AnyTimingOfAFileChoosesAFrame)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float odd[] = {0.0f, -0.0f, -0.5f, 1e-38f, 1e38f, -1e38f, infinity, -infinity, nan};
    for (int32_t mode = -1; mode <= 3; ++mode) {
        for (const float period : odd) {
            for (const float start : odd) {
                for (const float time : odd) {
                    KRE_Texture texture;
                    WithFrames(texture, 3, period, start, mode);
                    const int32_t frame = FrameAt(texture, time);
                    EXPECT_TRUE(frame >= 0 && frame < 3)
                        << frame << ": " << mode << ", " << period << ", " << start << ", " << time;
                }
            }
        }
    }
}
