// Fog that lies in the valleys.
float4x4 wvp : WORLDVIEWPROJECTION;
float3 eye = {0, 0, -3};
float4 fog = {0.7, 0.75, 0.8, 1};
float density = 0.9, thinning = 1.5;
texture diffuseMap;
sampler colours = sampler_state { Texture = <diffuseMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float3 uvAndFog : TEXCOORD0)
{
    clip = mul(position, wvp);
    float way = distance(position.xyz, eye);
    float amount = density * exp(-max(position.y + 1, 0) * thinning) * way * 0.5;
    uvAndFog = float3(uv, exp2(-amount));
}

float4 PS(float3 uvAndFog : TEXCOORD0) : COLOR
{
    return lerp(fog, tex2D(colours, uvAndFog.xy), uvAndFog.z);
}

technique Fog { pass P0 { VertexShader = compile vs_2_0 VS(); PixelShader = compile ps_2_0 PS(); } }
