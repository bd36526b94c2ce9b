// Toon shading with a ramp texture and an outline pass.
#define RAMP_STEPS 4
float4x4 wvp : WORLDVIEWPROJECTION;
float4x4 worldIT : WORLDINVERSETRANSPOSE;
float4x4 world : WORLD;
float3 eye : VIEWPOSITION;
float4 lampColour[6] : OmniLightDiffCol;
float4 lampPlace[6] : OmniLightPosition;
int lampCount : NumOmniLights;
float outline < string UIName = "Outline width"; float UIMin = 0; float UIMax = 1; > = 0.05;
texture ramp < string ResourceName = "ramp.png"; >;
sampler1D rampSampler = sampler_state { Texture = <ramp>; MinFilter = LINEAR; MagFilter = LINEAR; MipFilter = NONE; AddressU = CLAMP; };
struct VS_INPUT { float4 Position : POSITION; float3 Normal : NORMAL; };
struct VS_OUTPUT { float4 Position : POSITION; float3 Normal : TEXCOORD0; float3 World : TEXCOORD1; };
VS_OUTPUT ToonVS(VS_INPUT In)
{
    VS_OUTPUT Out = (VS_OUTPUT)0;
    Out.Position = mul(In.Position, wvp);
    Out.Normal = normalize(mul(In.Normal, (float3x3)worldIT));
    Out.World = mul(In.Position, world).xyz;
    return Out;
}
float Quantize(float x) { return floor(x * RAMP_STEPS + 0.5) / RAMP_STEPS; }
float4 ToonPS(VS_OUTPUT In, uniform bool useRamp) : COLOR
{
    float3 N = normalize(In.Normal), V = normalize(eye - In.World);
    float3 total = 0;
    for (int i = 0; i < 2; i++) {
        float3 L = lampPlace[i].xyz - In.World;
        float lit = saturate(dot(N, normalize(L)));
        lit = useRamp ? tex1D(rampSampler, lit).r : Quantize(lit);
        total += lit * lampColour[i].rgb;
    }
    float rim = 1 - saturate(dot(N, V));
    if (rim > 0.7) total += 0.2;
    return float4(total, 1);
}
float4 OutlineVS(float4 p : POSITION, float3 n : NORMAL) : POSITION { return mul(float4(p.xyz + n * outline, 1), wvp); }
float4 BlackPS() : COLOR { return float4(0, 0, 0, 1); }
technique Ramp { pass Outline { CullMode = CW; VertexShader = compile vs_1_1 OutlineVS(); PixelShader = compile ps_2_0 BlackPS(); }
  pass Lit { CullMode = NONE; VertexShader = compile vs_2_0 ToonVS(); PixelShader = compile ps_2_0 ToonPS(true); } }
technique Steps { pass { VertexShader = compile vs_2_0 ToonVS(); PixelShader = compile ps_2_0 ToonPS(false); } }
