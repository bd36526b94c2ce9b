// Sky from above, ground from below, by the oldest vertex shaders and fixed pixels.
float4x4 wvp : WORLDVIEWPROJECTION;
float3 up = {0, 1, 0};
float4 sky = {0.6, 0.75, 1, 1};
float4 ground = {0.3, 0.22, 0.15, 1};
texture diffuseMap;

void VS(float4 position : POSITION, float3 normal : NORMAL, float2 uv : TEXCOORD0,
        out float4 clip : POSITION, out float4 colour : COLOR0, out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    colour = lerp(ground, sky, dot(normal, up) * 0.5 + 0.5);
    uvOut = uv;
}

technique Hemisphere {
    pass P0 {
        VertexShader = compile vs_1_1 VS();
        PixelShader = NULL;
        Texture[0] = <diffuseMap>;
        ColorOp[0] = MODULATE2X;
        ColorArg1[0] = TEXTURE;
        ColorArg2[0] = DIFFUSE;
        AlphaOp[0] = SELECTARG2;
        AlphaArg2[0] = DIFFUSE;
        ColorOp[1] = DISABLE;
        MinFilter[0] = LINEAR;
        MagFilter[0] = LINEAR;
    }
}
