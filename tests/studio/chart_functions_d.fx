// Each function of the language in a band of its own, from -1 to 1.
float4x4 wvp : WORLDVIEWPROJECTION;

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv;
}

float Turn(float x)
{
    float s, c;
    sincos(x, s, c);
    return s * 2 + c;
}

float Band(int band, float x)
{
    switch (band) {
    case 0:
        return normalize(float3(x, 0.5, 0.2)).y;
    case 1:
        return pow(abs(x), 1.7);
    case 2:
        return radians(x * 40) * 0.5 + 0.5;
    case 3:
        return reflect(float2(x, 0.5), float2(0.6, 0.8)).y * 0.4 + 0.5;
    case 4:
        return refract(normalize(float2(x, -1)), float2(0, 1), 0.7).x + 0.5;
    case 5:
        return round(x * 4) / 8 + 0.5;
    case 6:
        return rsqrt(x + 1.5) * 0.5;
    case 7:
        return saturate(x);
    case 8:
        return sign(x) * 0.3 + 0.5;
    case 9:
        return sin(x * 5) * 0.5 + 0.5;
    case 10:
        return Turn(x * 4) * 0.25 + 0.5;
    default:
        return sinh(x) * 0.4 + 0.5;
    }
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float value = Band((int)(uv.y * 12), uv.x * 2 - 1);
    return float4(value, 1 - value, 0.5, 1);
}

technique Functions { pass P0 { VertexShader = compile vs_3_0 VS(); PixelShader = compile ps_3_0 PS(); } }
