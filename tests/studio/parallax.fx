// Stones that seem to stand out: the coordinates follow the view over a map of heights.
float4x4 wvp : WORLDVIEWPROJECTION;
float3 eye = {0, 0, -3};
float3 light = {0.5, 0.5, -1};
float depth = 0.06;
texture normalMap; // heights in alpha
texture diffuseMap;
sampler2D relief = sampler_state { Texture = (normalMap); MinFilter = LINEAR; MagFilter = LINEAR; };
sampler2D colours = sampler_state { Texture = (diffuseMap); MinFilter = LINEAR; MagFilter = LINEAR; };

struct Fragment {
    float4 position : POSITION;
    float2 uv : TEXCOORD0;
    float3 toEye : TEXCOORD1;
    float3 toLight : TEXCOORD2;
};

Fragment VS(float4 position : POSITION, float3 normal : NORMAL, float2 uv : TEXCOORD0,
            float3 tangent : TEXCOORD1)
{
    Fragment result;
    result.position = mul(position, wvp);
    result.uv = uv;
    float3x3 toTangent = {tangent, cross(normal, tangent), normal};
    result.toEye = mul(toTangent, eye - position.xyz);
    result.toLight = mul(toTangent, light);
    return result;
}

float4 PS(Fragment input) : COLOR
{
    float3 view = normalize(input.toEye);
    float2 uv = input.uv;
    [unroll] for (int step = 0; step < 3; step++) {
        float height = tex2D(relief, uv).a - 0.5;
        uv = input.uv + view.xy * height * depth;
    }
    float3 bump = tex2D(relief, uv).xyz * 2 - 1;
    float lit = max(dot(normalize(bump), normalize(input.toLight)), 0);
    return float4(tex2D(colours, uv).rgb * (0.3 + 0.7 * lit), 1);
}

technique Parallax {
    pass P0 {
        VertexShader = compile vs_2_0 VS();
        PixelShader = compile ps_2_0 PS();
    }
}
