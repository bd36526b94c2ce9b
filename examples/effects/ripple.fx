// Water that shows the screen behind it, shifted by its waves. Each point of the surface takes the
// picture from where it would stand with waves of another height; that height swings.
// fParam1: how many times the waves are raised, vParam1: the colour of the water.

float4x4 worldInverseTranspose : WORLDINVERSETRANSPOSE;
float4x4 viewInverse : VIEWINVERSE;
float4x4 worldViewProjection : WORLDVIEWPROJECTION;
float4 pixel : InvViewPortDim;
float time : GAMETIME;
float raise : fParam1 = 6;
float4 colour : vParam1 = {0.75, 0.9, 1, 0};
float4 specular : SpecularMaterial;
float power : SpecularPower;
texture screen : SCREENCOPY;

technique Ripple
{
    pass Refraction
    {
        Lighting = FALSE;
        AlphaBlendEnable = FALSE;
        AlphaTestEnable = FALSE;
        Texture[0] = <screen>;
        AddressU[0] = CLAMP;
        AddressV[0] = CLAMP;
        MinFilter[0] = LINEAR;
        MagFilter[0] = LINEAR;
        MipFilter[0] = NONE;
        TextureFactor = <colour>;
        ColorOp[0] = MODULATE;
        ColorArg1[0] = TEXTURE;
        ColorArg2[0] = TFACTOR;
        AlphaOp[0] = SELECTARG1;
        AlphaArg1[0] = TFACTOR;
        ColorOp[1] = DISABLE;
        AlphaOp[1] = DISABLE;
        // From the camera back to the object, whose waves are raised, and on to the screen, where u
        // and v run from 0 to 1 and pixels have their middles half a pixel from their corners.
        TexCoordIndex[0] = CAMERASPACEPOSITION;
        TextureTransformFlags[0] = COUNT3 | PROJECTED;
        TextureTransform[0] =
            mul(mul(mul(viewInverse, transpose(worldInverseTranspose)),
                    mul(float4x4(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1 + raise * cos(3 * time), 0,
                                 0, 0, 0, 1),
                        worldViewProjection)),
                float4x4(0.5, 0, 0, 0, 0, -0.5, 0, 0, 0, 0, 0, 0,
                         0.5 + 0.5 * pixel.x, 0.5 + 0.5 * pixel.y, 1, 0));
    }
    pass Glitter
    {
        Lighting = TRUE;
        SpecularEnable = TRUE;
        MaterialDiffuse = {0, 0, 0, 1};
        MaterialAmbient = {0, 0, 0, 1};
        MaterialEmissive = {0, 0, 0, 1};
        MaterialSpecular = <specular>;
        MaterialPower = <power>;
        AlphaBlendEnable = TRUE;
        SrcBlend = ONE;
        DestBlend = ONE;
        ZWriteEnable = FALSE;
        Texture[0] = NULL;
        TextureTransformFlags[0] = DISABLE;
        TexCoordIndex[0] = PASSTHRU;
        ColorOp[0] = SELECTARG1;
        ColorArg1[0] = DIFFUSE;
        AlphaArg1[0] = DIFFUSE;
    }
}
