// Blotches without a picture: values at the corners of a lattice, mixed between them.
float4x4 wvp : WORLDVIEWPROJECTION;
float scale = 5;

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv * scale;
}

float Corner(float2 cell)
{
    return frac(dot(cell * cell, float2(0.371, 0.593)) + cell.x * cell.y * 0.177);
}

float Value(float2 at)
{
    float2 cell = floor(at), part = at - cell;
    part = part * part * (3 - 2 * part);
    float2 rows = lerp(float2(Corner(cell), Corner(cell + float2(0, 1))),
                       float2(Corner(cell + float2(1, 0)), Corner(cell + 1)), part.x);
    return lerp(rows.x, rows.y, part.y);
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float value = Value(uv) * 0.65 + Value(uv * 2.13 + 7) * 0.35;
    return float4(lerp(float3(0.2, 0.1, 0.05), float3(0.9, 0.8, 0.6), value), 1);
}

technique Lattice { pass P0 { VertexShader = compile vs_1_1 VS(); PixelShader = compile ps_2_a PS(); } }
