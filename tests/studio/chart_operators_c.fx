// Each operator and conversion of the language in a band of its own, from -1 to 1.
float4x4 wvp : WORLDVIEWPROJECTION;

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv;
}

float Changed(float x)
{
    float y = 1;
    y += x;
    y *= 0.5;
    y -= 0.2;
    y /= 1.5;
    return y++ + --y + y--;
}

float Counted(float x)
{
    int count = 0;
    for (int i = 0; i < 8; i++) {
        if (i * 0.25 - 1 > x)
            break;
        count += i % 2 == 0 ? 1 : 0;
    }
    return count;
}

float Cells(float x)
{
    float2x3 m = float2x3(1, x, 2, 3, 4, x);
    m._m01_m12 = m._12_23.yx;
    m[1].xy *= 0.25;
    float3 row = m[0] + m[1];
    return (row.x - row.y * row.z) * 0.5;
}

float Band(int band, float x)
{
    if (band == 0)
        return (bool)(int)(x * 2) * 0.5;
    if (band == 1)
        return (float2(x, 0.5)).yx.y * 0.5 + 0.5;
    if (band == 2)
        return Changed(x) * 0.3 + 0.5;
    if (band == 3)
        return Counted(x) * 0.1 + 0.3;
    if (band == 4)
        return ((float2)float3(x, 0.5, 1)).x * 0.5 + 0.5;
    if (band == 5)
        return Cells(x) * 0.2 + 0.5;
    if (band == 6)
        return (float4(x, x, 0.2, 0.1) * float4(0.5, 1, 2, 1)).x + 0.4;
    return ((half)x * (double)0.5) + 0.5;
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float value = Band((int)(uv.y * 8), uv.x * 2 - 1);
    return float4(value, 1 - value, 0.5, 1);
}

technique Operators { pass P0 { VertexShader = compile vs_2_0 VS(); PixelShader = compile ps_2_a PS(); } }
