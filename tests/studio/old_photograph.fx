// Brown, darker at its corners.
texture sceneMap;
sampler2D scene : register(s0) = sampler_state { Texture = <sceneMap>; MinFilter = LINEAR; MagFilter = LINEAR; };
float3x3 tone = {
    0.39, 0.35, 0.27,
    0.77, 0.69, 0.53,
    0.19, 0.17, 0.13,
};
float strength = 0.8;

void Screen(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
            out float2 uvOut : TEXCOORD0)
{
    clip = float4(position.x, position.y, 0, 1);
    uvOut = uv;
}

float4 Photograph(float2 uv : TEXCOORD0) : COLOR0
{
    float4 colour = tex2D(scene, uv);
    float3 brown = mul(colour.rgb, tone);
    float corner = length(uv - 0.5);
    colour.rgb = lerp(colour.rgb, brown, strength) * (1 - corner * corner);
    return colour;
}

technique Photograph {
    pass P0 {
        ZEnable = FALSE;
        CullMode = NONE;
        VertexShader = compile vs_2_0 Screen();
        PixelShader = compile ps_2_0 Photograph();
    }
}
