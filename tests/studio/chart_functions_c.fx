// Each function of the language in a band of its own, from -1 to 1.
float4x4 wvp : WORLDVIEWPROJECTION;

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv;
}

float Split(float x)
{
    float whole;
    float part = modf(x, whole);
    return part - whole * 0.5;
}

float Band(int band, float x)
{
    switch (band) {
    case 0:
        return ldexp(x, 2) * 0.1 + 0.5;
    case 1:
        return length(float2(x, 0.5)) * 0.8;
    case 2:
        return lerp(0.2, 0.9, x * 0.5 + 0.5);
    case 3:
        return lit(x, 0.5 + x * 0.5, 4).z;
    case 4:
        return log(x + 1.5) * 0.5 + 0.4;
    case 5:
        return log2(x + 1.5) * 0.3 + 0.4;
    case 6:
        return log10(x + 1.5) + 0.4;
    case 7:
        return max(x, 0.3);
    case 8:
        return min(x, 0.7) * 0.5 + 0.5;
    case 9:
        return Split(x * 2.3) * 0.3 + 0.5;
    case 10:
        return mul(float2(x, 1), float2x2(0.2, 0.3, 0.4, 0.1)).x;
    default:
        return mul(float3x3(x, 0, 1, 1, x, 0, 0, 1, x), float3(0.2, 0.3, 0.1)).z;
    }
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float value = Band((int)(uv.y * 12), uv.x * 2 - 1);
    return float4(value, 1 - value, 0.5, 1);
}

technique Functions { pass P0 { VertexShader = compile vs_3_0 VS(); PixelShader = compile ps_3_0 PS(); } }
