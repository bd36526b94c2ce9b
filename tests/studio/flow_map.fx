// Two phases of a flow that take turns, so that nobody sees the jump.
float4x4 wvp : WORLDVIEWPROJECTION;
float time : TIME = 2.3;
float speed = 0.3;
texture maskMap;
texture diffuseMap;
sampler flow = sampler_state { Texture = <maskMap>; MinFilter = LINEAR; MagFilter = LINEAR; };
sampler colours = sampler_state { Texture = <diffuseMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv;
}

float3 Phase(float2 uv, float2 way, float part, out float weight)
{
    weight = 1 - abs(part * 2 - 1);
    return tex2D(colours, uv - way * part).rgb * weight;
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float2 way = (tex2D(flow, uv).rg * 2 - 1) * 0.2;
    float whole;
    float first = modf(time * speed, whole), second = frac(time * speed + 0.5);
    float weights[2];
    float3 sum = Phase(uv, way, first, weights[0]) + Phase(uv, way, second, weights[1]);
    return float4(sum / (weights[0] + weights[1]), 1);
}

technique Flow { pass P0 { VertexShader = compile vs_1_1 VS(); PixelShader = compile ps_2_0 PS(); } }
