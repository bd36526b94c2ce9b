// Steps of light from a ramp, and a dark line where the surface turns away.
float4x4 wvp : WORLDVIEWPROJECTION;
float3 eye = {0, 0, -3};
float3 light = {-0.5, 0.6, -0.7};
float4 paint = {0.9, 0.35, 0.2, 1};
texture rampMap;
sampler1D ramp = sampler_state { Texture = <rampMap>; MinFilter = POINT; MagFilter = POINT; AddressU = CLAMP; };

struct Interpolated
{
    float4 clip : POSITION;
    float lit : TEXCOORD0;
    float edge : TEXCOORD1;
};

Interpolated VS(float4 position : POSITION, float3 normal : NORMAL)
{
    Interpolated o;
    o.clip = mul(position, wvp);
    o.lit = dot(normal, normalize(light)) * 0.5 + 0.5;
    o.edge = dot(normal, normalize(eye - position.xyz));
    return o;
}

float4 PS(float lit : TEXCOORD0, float edge : TEXCOORD1) : COLOR
{
    float4 colour = paint * tex1D(ramp, lit);
    if (edge < 0.25)
        colour.rgb *= 0.1;
    colour.a = 1;
    return colour;
}

technique Toon
{
    pass Only
    {
        VertexShader = compile vs_2_0 VS();
        PixelShader = compile ps_2_0 PS();
    }
}
