// Takes the light away where a map of depths says that something stands before it.
float4x4 wvp : WORLDVIEWPROJECTION;
float4x4 world : WORLD;
float4x4 lightViewProjection;
float3 light = {0.3, 0.8, -0.5};
float2 texel = {0.03125, 0.03125};
float bias = 0.02;
texture shadowMap;
sampler2D depths = sampler_state {
    Texture = <shadowMap>;
    MinFilter = POINT;
    MagFilter = POINT;
    AddressU = CLAMP;
    AddressV = CLAMP;
};

void VS(in float4 position : POSITION, in float3 normal : NORMAL, out float4 clip : POSITION,
        out float4 inLight : TEXCOORD0, out float lit : TEXCOORD1)
{
    clip = mul(position, wvp);
    inLight = mul(mul(position, world), lightViewProjection);
    lit = saturate(dot(mul(normal, (float3x3)world), normalize(light)));
}

static const float2 kPlaces[4] = {{-0.5, -0.5}, {0.5, -0.5}, {-0.5, 0.5}, {0.5, 0.5}};

float Visible(float2 uv, float depth)
{
    float sum = 0;
    for (int i = 0; i < 4; ++i)
        sum += tex2D(depths, uv + kPlaces[i] * texel).r + bias < depth ? 0 : 1;
    return sum / 4;
}

float4 PS(float4 inLight : TEXCOORD0, float lit : TEXCOORD1) : COLOR
{
    float3 place = inLight.xyz / inLight.w;
    float2 uv = place.xy * float2(0.5, -0.5) + 0.5;
    return float4(float3(1, 0.95, 0.85) * (0.2 + 0.8 * lit * Visible(uv, place.z)), 1);
}

technique Shadow {
    pass P0 {
        VertexShader = compile vs_2_0 VS();
        PixelShader = compile ps_2_0 PS();
    }
}
