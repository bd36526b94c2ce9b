// Highlights for each pixel.
float4x4 wvp : WORLDVIEWPROJECTION;
float4x4 world : WORLD;
float3 eye = {0, 0, -3};
struct Lamp {
    float3 way;
    float4 colour;
};
Lamp lamp = {{0.3, 0.6, -0.8}, {1, 0.9, 0.8, 1}};
float4 ambient = {0.1, 0.1, 0.15, 1};
float4 diffuse = {0.3, 0.4, 0.8, 1};
float4 specular = {0.8, 0.8, 0.8, 1};
float power = 24;

struct Pixel {
    float4 clip : POSITION;
    float3 normal : TEXCOORD0;
    float3 view : TEXCOORD1;
};

Pixel VS(float4 position : POSITION, float3 normal : NORMAL)
{
    Pixel o;
    float4 placed = mul(position, world);
    o.clip = mul(position, wvp);
    o.normal = mul(normal, (float3x3)world);
    o.view = eye - placed.xyz;
    return o;
}

float4 PS(Pixel p) : COLOR
{
    float3 n = normalize(p.normal);
    float3 l = normalize(lamp.way);
    float3 h = normalize(l + normalize(p.view));
    float4 light = lit(dot(n, l), dot(n, h), power);
    return ambient + lamp.colour * (diffuse * light.y + specular * light.z);
}

technique Phong { pass P0 { VertexShader = compile vs_2_0 VS(); PixelShader = compile ps_2_0 PS(); } }
