// Lines where the brightness changes.
texture sceneMap;
sampler2D scene = sampler_state { Texture = <sceneMap>; MinFilter = POINT; MagFilter = POINT; AddressU = CLAMP; AddressV = CLAMP; };
float2 texel = {0.0625, 0.0625};
static const float3x3 kAcross = {-1, 0, 1, -2, 0, 2, -1, 0, 1};

void Screen(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
            out float2 uvOut : TEXCOORD0)
{
    clip = float4(position.xy, 0, 1);
    uvOut = uv;
}

float Brightness(float2 uv) { return dot(tex2D(scene, uv).rgb, float3(0.3, 0.59, 0.11)); }

float4 Edges(float2 uv : TEXCOORD0) : COLOR
{
    float2 slope = 0;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            if (row == 1 && column == 1)
                continue;
            float value = Brightness(uv + float2(column - 1, row - 1) * texel);
            slope.x += kAcross[row][column] * value;
            slope.y += kAcross[column][row] * value;
        }
    }
    float line = saturate(length(slope) * 0.7);
    return float4((1 - line) * float3(0.95, 0.93, 0.85), 1);
}

technique Edges { pass P0 { ZEnable = FALSE; CullMode = NONE; VertexShader = compile vs_2_0 Screen(); PixelShader = compile ps_2_a Edges(); } }
