// Each function of the language in a band of its own, from -1 to 1.
float4x4 wvp : WORLDVIEWPROJECTION;

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv;
}

float Band(int band, float x)
{
    switch (band) {
    case 0:
        return degrees(x) / 60;
    case 1:
        return determinant(float2x2(x, 1, -1, x)) * 0.5;
    case 2:
        return determinant(float3x3(x, 1, 0, 0, x, 1, 1, 0, x)) * 0.5;
    case 3:
        return distance(float2(x, 0), float2(0, 1)) * 0.7;
    case 4:
        return dot(float3(x, 1, x), float3(1, x, 0.5)) * 0.2 + 0.5;
    case 5:
        return exp(x) / 3;
    case 6:
        return exp2(x) / 2;
    case 7:
        return faceforward(float2(0.5, 1), float2(x, 1), float2(1, 0)).x + 0.5;
    case 8:
        return floor(x * 4) / 8 + 0.5;
    case 9:
        return fmod(x * 3, 2) * 0.3 + 0.5;
    case 10:
        return frac(x * 2);
    default:
        return isfinite(x) * 0.4;
    }
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float value = Band((int)(uv.y * 12), uv.x * 2 - 1);
    return float4(value, 1 - value, 0.5, 1);
}

technique Functions { pass P0 { VertexShader = compile vs_3_0 VS(); PixelShader = compile ps_3_0 PS(); } }
