// Highlights that are long across the grain.
float4x4 wvp : WORLDVIEWPROJECTION;
float3 eye = {0, 0, -3};
float3 light = {0.4, 0.8, -0.8};
float4 metal = {0.6, 0.6, 0.65, 1};

struct Grain {
    float4 clip : POSITION;
    float3 tangent : TEXCOORD0;
    float3 toEye : TEXCOORD1;
};

Grain VS(float4 position : POSITION, float3 tangent : TEXCOORD1)
{
    Grain o;
    o.clip = mul(position, wvp);
    o.tangent = tangent;
    o.toEye = eye - position.xyz;
    return o;
}

float4 PS(Grain g) : COLOR
{
    float3 t = normalize(g.tangent);
    float2 along = {dot(t, normalize(light)), dot(t, normalize(g.toEye))};
    float2 across = sqrt(max(1 - along * along, 0));
    float shine = pow(saturate(across.x * across.y - along.x * along.y), 16);
    return metal * (0.25 + 0.5 * across.x) + shine * 0.5;
}

technique Metal { pass P0 { VertexShader = compile vs_1_1 VS(); PixelShader = compile ps_2_0 PS(); } }
