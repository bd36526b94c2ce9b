// Effect texts that name files of cubes and volumes, from the file to the frame.

#include "tests/gfx/DrawnEffect.h"
#include "tests/support/SolidDds.h"

namespace {

class SolidEffectTest : public DrawnEffect {
protected:
    /// The frame with an effect of one pass.
    std::vector<D3DCOLOR> Frame(const std::string& declarations, const std::string& states)
    {
        scratch.Write("one.fx", declarations + "\ntechnique t { pass { CullMode = NONE; " + states +
                                    " } }\n");
        gfx.LoadEffect(&effect, "one.fx", false, 0, true);
        gfx.SelectEffect(&effect);
        return Drawn();
    }
};

constexpr const char* kFixed = "Texture[0] = <map>; TexCoordIndex[0] = CAMERASPACEPOSITION; "
                               "TextureTransformFlags[0] = COUNT3; ColorOp[0] = SELECTARG1; "
                               "ColorArg1[0] = TEXTURE; ColorOp[1] = DISABLE; ";

} // namespace

/// Towards (x, y, 1): the face of x beyond 1, that of y above, else +z.
TEST_F(SolidEffectTest, FixedPassesShowCubes)
{
    scratch.Write("sky.dds", CubeDds({0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004, 0xFF000005,
                                      0xFF000006}));
    const auto frame = Frame("textureCUBE map < string ResourceName = \"sky.dds\"; >;", kFixed);
    EXPECT_EQ(At(frame, 0, 0), 5u);
    EXPECT_EQ(At(frame, 1.5f, 0.5f), 1u);
    EXPECT_EQ(At(frame, -1.5f, -0.5f), 2u);
    EXPECT_EQ(At(frame, 0.5f, 1.5f), 3u);
    EXPECT_EQ(At(frame, -0.5f, -1.5f), 4u);
}

TEST_F(SolidEffectTest, PixelShadersShowCubes)
{
    scratch.Write("sky.dds", CubeDds({0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004, 0xFF000005,
                                      0xFF000006}));
    const auto frame =
        Frame("texture map < string ResourceName = \"sky.dds\"; >;",
              std::string(kFixed) +
                  "PixelShader = asm { ps_2_0\n dcl t0.xyz\n dcl_cube s0\n mov r1, t0.yzxw\n"
                  " texld r0, r1, s0\n"
                  " mov oC0, r0 };");
    EXPECT_EQ(At(frame, 0, 0), 3u) << "z becomes y";
    EXPECT_EQ(At(frame, 1.5f, 0.5f), 5u) << "x becomes z";
    EXPECT_EQ(At(frame, 0.5f, -1.5f), 2u) << "y becomes x";
}

/// A matrix moves x from -2..2 to slices, in quarters.
TEST_F(SolidEffectTest, FixedPassesShowVolumes)
{
    scratch.Write("smoke.dds", VolumeDds({0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004}));
    const auto frame =
        Frame("texture3D map < string ResourceName = \"smoke.dds\"; >;",
              std::string(kFixed) + "TextureTransform[0] = float4x4(0, 0, 0.25, 0, 0, 0, 0, 0, "
                                    "0, 0, 0, 0, 0, 0, 0.5, 1);");
    EXPECT_EQ(At(frame, -1.5f, 0), 1u);
    EXPECT_EQ(At(frame, -0.5f, 0), 2u);
    EXPECT_EQ(At(frame, 0.5f, 1), 3u);
    EXPECT_EQ(At(frame, 1.5f, -1), 4u);
}

/// Its header is right, so the call that makes the texture finds the lack.
TEST_F(SolidEffectTest, ACubeWithoutAFaceIsAnError)
{
    std::string five = CubeDds({1, 2, 3, 4, 5});
    five[113] = 0x7E; // the second byte of the word that names the faces
    scratch.Write("sky.dds", five);
    EXPECT_THAT(
        RaisedBy([&] { Frame("texture map < string ResourceName = \"sky.dds\"; >;", kFixed); }),
        testing::HasSubstr("D3DXCreateTextureFromFileA failed: D3DXERR_INVALIDDATA (file:"));
}

TEST_F(SolidEffectTest, DamagedFilesAreErrors)
{
    const std::string whole = CubeDds({1, 2, 3, 4, 5, 6});
    scratch.Write("sky.dds", whole.substr(0, whole.size() - 1));
    EXPECT_THAT(
        RaisedBy([&] { Frame("texture map < string ResourceName = \"sky.dds\"; >;", kFixed); }),
        testing::HasSubstr("failed: D3DXERR_INVALIDDATA (file:"));
}
