// Each function of the language in a band of its own, from -1 to 1.
float4x4 wvp : WORLDVIEWPROJECTION;

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv;
}

float Exponent(float x)
{
    float power;
    float part = frexp(x, power);
    return part + power * 0.25;
}

float Band(int band, float x)
{
    switch (band) {
    case 0:
        return smoothstep(-0.5, 0.7, x);
    case 1:
        return sqrt(x * 0.5 + 0.5);
    case 2:
        return step(0.2, x) * 0.7;
    case 3:
        return tan(x) * 0.3 + 0.5;
    case 4:
        return tanh(x * 2) * 0.5 + 0.5;
    case 5:
        return transpose(float2x2(x, 0.3, 0.8, 0.1))._12;
    case 6:
        return trunc(x * 4) / 8 + 0.5;
    case 7:
        return Exponent(x + 1.1) * 0.5;
    default:
        return D3DCOLORtoUBYTE4(float4(abs(x), 0, 0, 0)).z / 255;
    }
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float value = Band((int)(uv.y * 9), uv.x * 2 - 1);
    return float4(value, 1 - value, 0.5, 1);
}

technique Functions { pass P0 { VertexShader = compile vs_3_0 VS(); PixelShader = compile ps_3_0 PS(); } }
