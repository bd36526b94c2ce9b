// Three grounds, mixed as a map says, with a detail that fades.
float4x4 wvp : WORLDVIEWPROJECTION;
float tiles[3] = {4, 6, 8};
float3 tints[3] = {{0.5, 0.8, 0.3}, {0.6, 0.45, 0.3}, {0.8, 0.8, 0.85}};
texture maskMap;
texture diffuseMap;
sampler mask = sampler_state { Texture = <maskMap>; MinFilter = LINEAR; MagFilter = LINEAR; };
sampler ground = sampler_state { Texture = <diffuseMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

struct V2F {
    float4 clip : POSITION;
    float2 uv[4] : TEXCOORD0;
    float slope : TEXCOORD4;
};

V2F VS(float4 position : POSITION, float3 normal : NORMAL, float2 uv : TEXCOORD0)
{
    V2F o;
    o.clip = mul(position, wvp);
    o.uv[0] = uv;
    for (int i = 0; i < 3; ++i)
        o.uv[i + 1] = uv * tiles[i];
    o.slope = saturate(normal.y * 1.5);
    return o;
}

float4 PS(V2F input) : COLOR0
{
    float3 weights = tex2D(mask, input.uv[0]).rgb;
    weights /= max(dot(weights, 1), 0.01);
    float3 sum = 0;
    [unroll]
    for (int i = 0; i < 3; ++i)
        sum += tex2D(ground, input.uv[i + 1]).rgb * tints[i] * weights[i];
    return float4(lerp(sum * 0.6, sum, input.slope), 1);
}

technique Terrain { pass { VertexShader = compile vs_2_0 VS(); PixelShader = compile ps_2_0 PS(); } }
