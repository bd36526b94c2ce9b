// A picture moves the vertices.
float4x4 wvp : WORLDVIEWPROJECTION;
float height = 0.4;
texture heightMap;
sampler2D heights = sampler_state { Texture = <heightMap>; MinFilter = POINT; MagFilter = POINT; MipFilter = NONE; };

void VS(float4 position : POSITION, float3 normal : NORMAL, float2 uv : TEXCOORD0,
        out float4 clip : POSITION, out float level : TEXCOORD0)
{
    level = tex2Dlod(heights, float4(uv, 0, 0)).r;
    clip = mul(float4(position.xyz + normal * (level - 0.5) * height, 1), wvp);
}

float4 PS(float level : TEXCOORD0) : COLOR
{
    return float4(lerp(float3(0.1, 0.3, 0.1), float3(1, 1, 0.9), level), 1);
}

technique Displaced { pass P0 { VertexShader = compile vs_3_0 VS(); PixelShader = compile ps_3_0 PS(); } }
