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
        return abs(x);
    case 1:
        return acos(x) / 3.2;
    case 2:
        return all(float2(x, 1));
    case 3:
        return any(float2(0, x));
    case 4:
        return asin(x) * 0.3 + 0.5;
    case 5:
        return atan(x) * 0.5 + 0.5;
    case 6:
        return atan2(x, 0.5) * 0.3 + 0.5;
    case 7:
        return ceil(x * 3) / 3;
    case 8:
        return clamp(x, -0.5, 0.6);
    case 9:
        return cos(x * 5) * 0.5 + 0.5;
    case 10:
        return cosh(x) - 1;
    default:
        return cross(float3(x, 1, 0), float3(0, x, 1)).y * 0.5 + 0.5;
    }
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float value = Band((int)(uv.y * 12), uv.x * 2 - 1);
    return float4(value, 1 - value, 0.5, 1);
}

technique Functions { pass P0 { VertexShader = compile vs_3_0 VS(); PixelShader = compile ps_3_0 PS(); } }
