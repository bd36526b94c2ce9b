// Bumps in tangent space; the light is turned there for each vertex.
row_major float4x4 wvp : WORLDVIEWPROJECTION;
float3 light = {0.5, 0.5, -1};
texture normalMap;
texture diffuseMap;
sampler bumps = sampler_state { Texture = <normalMap>; MinFilter = LINEAR; MagFilter = LINEAR; };
sampler colours = sampler_state { Texture = <diffuseMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

void VS(float4 position : POSITION, float3 normal : NORMAL, float2 uv : TEXCOORD0,
        float3 tangent : TEXCOORD1, out float4 clip : POSITION, out float2 uvOut : TEXCOORD0,
        out float3 toLight : TEXCOORD1)
{
    clip = mul(position, wvp);
    uvOut = uv;
    float3 binormal = cross(normal, tangent);
    float3 l = normalize(light);
    toLight = float3(dot(l, tangent), dot(l, binormal), dot(l, normal));
}

float3 Unpack(float3 packed) { return packed * 2 - 1; }

float4 PS(float2 uv : TEXCOORD0, float3 toLight : TEXCOORD1) : COLOR
{
    float lit = saturate(dot(Unpack(tex2D(bumps, uv).xyz), normalize(toLight)));
    return tex2D(colours, uv) * (0.25 + 0.75 * lit);
}

technique Bumps { pass P0 { VertexShader = compile vs_1_1 VS(); PixelShader = compile ps_2_0 PS(); } }
