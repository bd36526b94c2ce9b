// The blur of a bloom. Both directions come from one function.
float2 texel = {0.03, 0.03};
texture sceneMap;
sampler scene = sampler_state { Texture = <sceneMap>; MinFilter = LINEAR; MagFilter = LINEAR; AddressU = CLAMP; AddressV = CLAMP; };

#define TAPS 7
static const float kWeights[TAPS] = {0.06, 0.12, 0.2, 0.24, 0.2, 0.12, 0.06};

void Screen(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
            out float2 uvOut : TEXCOORD0)
{
    clip = float4(position.xy * 0.9, 0, 1);
    uvOut = uv;
}

float4 Blur(float2 uv : TEXCOORD0, uniform bool isAcross) : COLOR
{
    const float2 way = isAcross ? float2(texel.x, 0) : float2(0, texel.y);
    float4 sum = 0;
    for (int i = 0; i < TAPS; ++i)
        sum += kWeights[i] * tex2D(scene, uv + way * (i - TAPS / 2));
    return sum;
}

technique Blur {
    pass Across {
        VertexShader = compile vs_1_1 Screen();
        PixelShader = compile ps_2_0 Blur(true);
        ZEnable = FALSE;
        CullMode = NONE;
    }
    pass Down {
        PixelShader = compile ps_2_0 Blur(false);
        AlphaBlendEnable = TRUE;
        SrcBlend = ONE;
        DestBlend = ONE;
        BlendOp = MAX;
    }
}
