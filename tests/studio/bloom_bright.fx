// The first step of a bloom: a quarter of the size, only what is bright.
float2 texel = {0.015625, 0.015625};
float threshold = 0.6;
texture sceneMap;
sampler scene = sampler_state { Texture = <sceneMap>; MinFilter = LINEAR; MagFilter = LINEAR; AddressU = CLAMP; AddressV = CLAMP; };

void Screen(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
            out float2 uvOut : TEXCOORD0)
{
    clip = float4(position.xy * 0.9, 0, 1);
    uvOut = uv;
}

half4 Bright(half2 uv : TEXCOORD0) : COLOR0
{
    half3 sum = 0;
    for (int y = -1; y <= 1; y += 2)
        for (int x = -1; x <= 1; x += 2)
            sum += tex2D(scene, uv + half2(x, y) * texel).rgb;
    sum *= 0.25h;
    half luminance = dot(sum, half3(0.299, 0.587, 0.114));
    return half4(sum * smoothstep(threshold - 0.1, threshold + 0.1, luminance), 1);
}

technique Bloom {
    pass Bright {
        VertexShader = compile vs_1_1 Screen();
        PixelShader = compile ps_2_0 Bright();
        ZEnable = FALSE;
        CullMode = NONE;
    }
}
