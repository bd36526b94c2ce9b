// Up to four lamps, as many as are on.
float4x4 wvp : WORLDVIEWPROJECTION;
struct Lamp {
    float3 position;
    float reach;
    float3 colour;
};
Lamp lamps[4] = {
    {{1.5, 0, -1.5}, 3, {1, 0.2, 0.1}},
    {{-1.5, 0.5, -1}, 3, {0.1, 0.9, 0.2}},
    {{0, 1.8, -0.5}, 2.5, {0.2, 0.3, 1}},
    {{0, -2, 0}, 2, {1, 1, 1}},
};
int lampCount = 3;

struct Pixel {
    float4 clip : POSITION;
    float3 position : TEXCOORD0;
    float3 normal : TEXCOORD1;
};

Pixel VS(float4 position : POSITION, float3 normal : NORMAL)
{
    Pixel o;
    o.clip = mul(position, wvp);
    o.position = position.xyz;
    o.normal = normal;
    return o;
}

float3 Light(Lamp lamp, float3 position, float3 normal)
{
    float3 way = lamp.position - position;
    float distance = length(way);
    float weakened = saturate(1 - distance / lamp.reach);
    return lamp.colour * (saturate(dot(normal, way / distance)) * weakened * weakened);
}

float4 PS(Pixel p) : COLOR
{
    float3 normal = normalize(p.normal);
    float3 sum = float3(0.08, 0.08, 0.08);
    for (int i = 0; i < 4; ++i) {
        if (i >= lampCount)
            break;
        sum += Light(lamps[i], p.position, normal) * 2;
    }
    return float4(sum, 1);
}

technique Lamps { pass P0 { VertexShader = compile vs_3_0 VS(); PixelShader = compile ps_3_0 PS(); } }
