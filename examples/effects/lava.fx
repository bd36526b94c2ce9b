// Two layers of one picture that scroll at different speeds, the second one larger and added.
// fParam1: how much of the picture goes by in a second, vParam1: the colour of the second layer.

float time : GAMETIME;
float speed : fParam1 = 0.1;
float4 heat : vParam1 = {1, 1, 1, 0};
texture picture : DIFFUSEMAP;

technique Scroll
{
    pass Crust
    {
        Lighting = FALSE;
        AlphaBlendEnable = FALSE;
        AlphaTestEnable = FALSE;
        Texture[0] = <picture>;
        AddressU[0] = WRAP;
        AddressV[0] = WRAP;
        MinFilter[0] = LINEAR;
        MagFilter[0] = LINEAR;
        MipFilter[0] = LINEAR;
        TexCoordIndex[0] = 0;
        TextureTransformFlags[0] = COUNT2;
        TextureTransform[0] = float4x4(1, 0, 0, 0, 0, 1, 0, 0, 0, -frac(time * speed), 1, 0,
                                       0, 0, 0, 1);
        ColorOp[0] = SELECTARG1;
        ColorArg1[0] = TEXTURE;
        ColorOp[1] = DISABLE;
        AlphaOp[1] = DISABLE;
    }
    pass Heat
    {
        AlphaBlendEnable = TRUE;
        SrcBlend = ONE;
        DestBlend = ONE;
        ZWriteEnable = FALSE;
        TextureTransform[0] = float4x4(0.5, 0, 0, 0, 0, 0.5, 0, 0,
                                       0.3, -frac(time * speed * 1.5), 1, 0, 0, 0, 0, 1);
        TextureFactor = <heat>;
        ColorOp[0] = MODULATE;
        ColorArg2[0] = TFACTOR;
    }
}
