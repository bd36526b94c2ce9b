// Eaten away by a map, with a glowing edge.
float4x4 wvp : WORLDVIEWPROJECTION;
float amount = 0.45;
float edge = 0.12;
float3 glow = {1, 0.5, 0.1};
texture maskMap;
texture diffuseMap;
sampler mask = sampler_state { Texture = <maskMap>; MinFilter = LINEAR; MagFilter = LINEAR; };
sampler colours = sampler_state { Texture = <diffuseMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

void VS(inout float4 position : POSITION, inout float2 uv : TEXCOORD0)
{
    position = mul(position, wvp);
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float rest = tex2D(mask, uv).r - amount;
    clip(rest);
    float3 colour = tex2D(colours, uv).rgb;
    float burning = 1 - saturate(rest / edge);
    return float4(colour + glow * burning * burning, 1);
}

technique Dissolve { pass P0 { VertexShader = compile vs_1_1 VS(); PixelShader = compile ps_2_0 PS(); CullMode = NONE; } }
