// An object that shines, with a soft light around it. The object is drawn bright into a quarter of
// the screen's width and height, which is blurred to the sides and up and down, twice so that the
// light is round, and then added to the screen. Its colour is that of the material's self-illumination. Where a pass has to fill a
// buffer, the object itself is blown up to cover it: so it has to be round, with its origin inside.

float4x4 world : WORLD;
float4x4 view : VIEW;
float4x4 projection : PROJECTION;
float4 pixel : InvViewPortDim;
float4 shine : EmissiveMaterial;
texture sharp : SCREENQUARTERBUFFER1;
texture soft : SCREENQUARTERBUFFER2;

static const float4x4 one = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

// Camera space is clip space then, from the object's own space, with all of it at half depth.
#define FILL \
    WorldTransform[0] = float4x4(4, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0, 0.5, 1); \
    ViewTransform = <one>; \
    ProjectionTransform = <one>; \
    ZFunc = ALWAYS; \
    ZWriteEnable = FALSE;

#define SCENE \
    WorldTransform[0] = <world>; \
    ViewTransform = <view>; \
    ProjectionTransform = <projection>;

// One of eight samples, some pixels of the small buffer aside. A pixel of it is 4 of the screen
// wide, and its middle is half of that from its corner.
#define SAMPLE(stage, picture, across, down, operation) \
    Texture[stage] = <picture>; \
    AddressU[stage] = CLAMP; \
    AddressV[stage] = CLAMP; \
    MinFilter[stage] = LINEAR; \
    MagFilter[stage] = LINEAR; \
    MipFilter[stage] = NONE; \
    TexCoordIndex[stage] = CAMERASPACEPOSITION | stage; \
    TextureTransformFlags[stage] = COUNT2; \
    TextureTransform[stage] = float4x4(0.5, 0, 0, 0, 0, -0.5, 0, 0, 0, 0, 1, 0, \
                                       0.5 + (4 * (across) + 2) * pixel.x, \
                                       0.5 + (4 * (down) + 2) * pixel.y, 0, 1); \
    ColorOp[stage] = operation; \
    ColorArg0[stage] = CURRENT; \
    ColorArg1[stage] = TEXTURE; \
    ColorArg2[stage] = TFACTOR; \
    AlphaOp[stage] = SELECTARG1; \
    AlphaArg1[stage] = TFACTOR;

// Samples lie two pixels apart, each between two pixels, so that sixteen of them are in it.
#define BLUR(picture, across, down) \
    SAMPLE(0, picture, -6.5 * across, -6.5 * down, MODULATE) \
    SAMPLE(1, picture, -4.5 * across, -4.5 * down, MULTIPLYADD) \
    SAMPLE(2, picture, -2.5 * across, -2.5 * down, MULTIPLYADD) \
    SAMPLE(3, picture, -0.5 * across, -0.5 * down, MULTIPLYADD) \
    SAMPLE(4, picture, 1.5 * across, 1.5 * down, MULTIPLYADD) \
    SAMPLE(5, picture, 3.5 * across, 3.5 * down, MULTIPLYADD) \
    SAMPLE(6, picture, 5.5 * across, 5.5 * down, MULTIPLYADD) \
    SAMPLE(7, picture, 7.5 * across, 7.5 * down, MULTIPLYADD)

technique Glow
{
    pass Clear < string RenderTarget = "ScreenQuarterBuffer1"; >
    {
        FILL
        Lighting = FALSE;
        FogEnable = FALSE;
        AlphaBlendEnable = FALSE;
        AlphaTestEnable = FALSE;
        CullMode = NONE;
        Texture[0] = NULL;
        TextureFactor = 0xFF000000;
        ColorOp[0] = SELECTARG1;
        ColorArg1[0] = TFACTOR;
        AlphaOp[0] = SELECTARG1;
        AlphaArg1[0] = TFACTOR;
        ColorOp[1] = DISABLE;
        AlphaOp[1] = DISABLE;
    }
    pass Bright < string RenderTarget = "ScreenQuarterBuffer1"; >
    {
        SCENE
        TextureFactor = <shine>;
    }
    pass Sideways < string RenderTarget = "ScreenQuarterBuffer2"; >
    {
        FILL
        TextureFactor = 0xFF202020;
        BLUR(sharp, 1, 0)
    }
    pass UpAndDown < string RenderTarget = "ScreenQuarterBuffer1"; >
    {
        BLUR(soft, 0, 1)
    }
    pass SidewaysAgain < string RenderTarget = "ScreenQuarterBuffer2"; >
    {
        TextureFactor = 0xFF303030;
        BLUR(sharp, 1, 0)
    }
    pass UpAndDownAgain < string RenderTarget = "ScreenQuarterBuffer1"; >
    {
        BLUR(soft, 0, 1)
    }
    pass Object
    {
        SCENE
        ZFunc = LESSEQUAL;
        ZWriteEnable = TRUE;
        Texture[0] = NULL;
        TextureFactor = <shine>;
        ColorOp[0] = SELECTARG1;
        ColorArg1[0] = TFACTOR;
        ColorOp[1] = DISABLE;
        AlphaOp[1] = DISABLE;
    }
    pass Around
    {
        FILL
        CullMode = CCW; // one side alone, or the light would be added twice
        AlphaBlendEnable = TRUE;
        SrcBlend = INVDESTCOLOR;
        DestBlend = ONE;
        Texture[0] = <sharp>;
        TextureTransform[0] = float4x4(0.5, 0, 0, 0, 0, -0.5, 0, 0, 0, 0, 1, 0,
                                       0.5 + 0.5 * pixel.x, 0.5 + 0.5 * pixel.y, 0, 1);
        ColorArg1[0] = TEXTURE;
    }
}
