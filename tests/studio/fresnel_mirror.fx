// A polished body: the surroundings show most at its edges.
float4x4 wvp : WORLDVIEWPROJECTION;
float4x4 world : WORLD;
float3 eye = {0, 0, -3};
float3 metal = {0.7, 0.6, 0.4};
texture environmentMap;
samplerCUBE surroundings = sampler_state { Texture = <environmentMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

struct Surface {
    float3 normal : TEXCOORD0;
    float3 view : TEXCOORD1;
};
struct Transformed {
    float4 clip : POSITION;
    Surface surface;
};

Transformed VS(float4 position : POSITION, float3 normal : NORMAL)
{
    Transformed o;
    o.clip = mul(position, wvp);
    o.surface.normal = mul(normal, (float3x3)world);
    o.surface.view = mul(position, world).xyz - eye;
    return o;
}

float4 PS(Surface surface) : COLOR
{
    float3 n = normalize(surface.normal), v = normalize(surface.view);
    float3 mirrored = texCUBE(surroundings, reflect(v, n)).rgb;
    float3 bent = texCUBE(surroundings, refract(v, n, 0.7)).rgb;
    float f = lerp(0.15, 1, pow(1 - abs(dot(v, n)), 3));
    return float4(lerp(bent * metal, mirrored, f), 1);
}

technique Mirror { pass P0 { VertexShader = compile vs_2_0 VS(); PixelShader = compile ps_2_0 PS(); } }
