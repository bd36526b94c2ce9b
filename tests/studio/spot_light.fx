// A cone of light with a soft edge.
float4x4 wvp : WORLDVIEWPROJECTION;
float3 lamp = {0, 1, -3};
float3 way = {0, -0.3, 1};
float2 cone = {20, 30}; // degrees: full, none

void VS(float4 position : POSITION, float3 normal : NORMAL, out float4 clip : POSITION,
        out float3 fromLamp : TEXCOORD0, out float3 normalOut : TEXCOORD1)
{
    clip = mul(position, wvp);
    fromLamp = position.xyz - lamp;
    normalOut = normal;
}

float4 PS(float3 fromLamp : TEXCOORD0, float3 normal : TEXCOORD1) : COLOR
{
    float3 to = normalize(fromLamp);
    float2 edges = cos(radians(cone));
    float inside = smoothstep(edges.y, edges.x, dot(to, normalize(way)));
    float lit = saturate(-dot(normalize(normal), to));
    return float4((0.08 + inside * lit).xxx * float3(1, 1, 0.8), 1);
}

technique Spot { pass P0 { VertexShader = compile vs_2_0 VS(); PixelShader = compile ps_2_0 PS(); } }
