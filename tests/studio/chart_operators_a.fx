// Each operator and conversion of the language in a band of its own, from -1 to 1.
float4x4 wvp : WORLDVIEWPROJECTION;

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv;
}

float Band(int band, float x)
{
    if (band == 0)
        return x + 0.4;
    if (band == 1)
        return x - 0.4;
    if (band == 2)
        return x * 0.7 + 0.3;
    if (band == 3)
        return 0.2 / (x + 1.3);
    if (band == 4)
        return fmod(x * 3, 1) * 0.5 + 0.5;
    if (band == 5)
        return (x * 7 % 2) * 0.3 + 0.5;
    if (band == 6)
        return -x;
    if (band == 7)
        return +x;
    if (band == 8)
        return !x * 0.5;
    if (band == 9)
        return (x < 0.3) * 0.5;
    if (band == 10)
        return (x <= 0.3) * 0.4;
    if (band == 11)
        return (x > -0.3) * 0.6;
    return (x >= -0.3) * 0.7;
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float value = Band((int)(uv.y * 13), uv.x * 2 - 1);
    return float4(value, 1 - value, 0.5, 1);
}

technique Operators { pass P0 { VertexShader = compile vs_2_0 VS(); PixelShader = compile ps_2_a PS(); } }
