// Contrast, saturation and gamma of a finished picture.
texture sceneMap;
sampler scene = sampler_state { Texture = <sceneMap>; MinFilter = LINEAR; MagFilter = LINEAR; };
float contrast = 1.3, saturation = 0.6, gamma = 0.8;
float3 lift = {0.02, 0, 0.03};
const float3 kGrey = {0.3, 0.59, 0.11};

void Screen(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
            out float2 uvOut : TEXCOORD0)
{
    clip = float4(position.xy, 0, 1);
    uvOut = uv;
}

void Contrast(inout float3 colour) { colour = (colour - 0.5) * contrast + 0.5; }
void Saturate(inout float3 colour) { colour = lerp(dot(colour, kGrey).xxx, colour, saturation); }

float4 Grade(float2 uv : TEXCOORD0) : COLOR
{
    float4 colour = tex2D(scene, uv);
    Contrast(colour.rgb);
    Saturate(colour.rgb);
    colour.rgb = pow(saturate(colour.rgb + lift), gamma);
    return colour;
}

technique Grade { pass P0 { ZEnable = FALSE; CullMode = NONE; VertexShader = compile vs_1_1 Screen(); PixelShader = compile ps_2_0 Grade(); } }
