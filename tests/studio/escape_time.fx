// How soon a point escapes: a loop whose end nobody knows before.
float4x4 wvp : WORLDVIEWPROJECTION;
float2 centre = {-0.5, 0};
float2 size = {2.6, 2.6};

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 place : TEXCOORD0)
{
    clip = mul(position, wvp);
    place = centre + (uv - 0.5) * size;
}

float4 PS(float2 place : TEXCOORD0) : COLOR
{
    float2 z = 0;
    float rounds = 0;
    [loop]
    for (int i = 0; i < 24; ++i) {
        z = float2(z.x * z.x - z.y * z.y, 2 * z.x * z.y) + place;
        if (dot(z, z) > 4)
            break;
        rounds += 1;
    }
    float part = floor(rounds / 4) / 6;
    return float4(part, part * part, 1 - part, 1);
}

technique Escape { pass P0 { VertexShader = compile vs_3_0 VS(); PixelShader = compile ps_3_0 PS(); } }
