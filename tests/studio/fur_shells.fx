// Shells around a body: each pass is one layer, and the hair gets thinner outwards.
float4x4 wvp : WORLDVIEWPROJECTION;
float furLength = 0.2;
float3 gravity = {0, -0.1, 0};
float4 root = {0.25, 0.15, 0.08, 1};
float4 tip = {0.9, 0.7, 0.45, 1};
texture maskMap;
sampler hairs = sampler_state { Texture = <maskMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

void Shell(float4 position : POSITION, float3 normal : NORMAL, float2 uv : TEXCOORD0,
           uniform float layer, out float4 clip : POSITION, out float2 uvOut : TEXCOORD0,
           out float4 colour : COLOR0)
{
    float3 way = normal + gravity * layer * layer;
    clip = mul(float4(position.xyz + way * furLength * layer, 1), wvp);
    uvOut = uv * 4;
    colour = lerp(root, tip, layer);
    colour.a = layer;
}

float4 Hair(float2 uv : TEXCOORD0, float4 colour : COLOR0) : COLOR
{
    float height = tex2D(hairs, uv).r;
    return float4(colour.rgb, height > colour.a ? 1 - colour.a * 0.5 : 0);
}

#define LAYER(n, height) \
    pass n { \
        VertexShader = compile vs_1_1 Shell(height); \
        PixelShader = compile ps_2_0 Hair(); \
        AlphaBlendEnable = TRUE; \
        SrcBlend = SRCALPHA; \
        DestBlend = INVSRCALPHA; \
    }

technique Fur {
    LAYER(L0, 0)
    LAYER(L1, 0.25)
    LAYER(L2, 0.5)
    LAYER(L3, 0.75)
}
