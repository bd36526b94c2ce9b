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
        return (int(x * 4) == 2) * 0.5;
    if (band == 1)
        return (int(x * 4) != 2) * 0.5;
    if (band == 2)
        return (x > -0.5 && x < 0.5) * 0.8;
    if (band == 3)
        return (x < -0.5 || x > 0.5) * 0.8;
    if (band == 4)
        return x > 0 ? 0.3 : 0.8;
    if (band == 5)
        return (5 & 6) * 0.1 + x * 0.1;
    if (band == 6)
        return (5 | 6) * 0.1 + x * 0.1;
    if (band == 7)
        return (5 ^ 6) * 0.1 + x * 0.1;
    if (band == 8)
        return (1 << 2) * 0.1 + x * 0.1;
    if (band == 9)
        return (~3 + 8) * 0.1;
    if (band == 10)
        return (int)(x * 5) * 0.1 + 0.5;
    if (band == 11)
        return (int)(x * 5) / 2 * 0.2 + 0.5;
    return (int)(x * 9) % 3 * 0.2 + 0.5;
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float value = Band((int)(uv.y * 13), uv.x * 2 - 1);
    return float4(value, 1 - value, 0.5, 1);
}

technique Operators { pass P0 { VertexShader = compile vs_2_0 VS(); PixelShader = compile ps_2_a PS(); } }
