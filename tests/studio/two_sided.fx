// Leaves: another colour on the back.
float4x4 wvp : WORLDVIEWPROJECTION;
float4 colours[2] = {{0.2, 0.6, 0.15, 1}, {0.6, 0.75, 0.3, 1}};

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv;
}

float4 PS(float2 uv : TEXCOORD0, float face : VFACE) : COLOR
{
    clip(0.5 - abs(frac(uv.x * 4) - 0.5) - 0.15);
    return face < 0 ? colours[0] : colours[1];
}

technique Leaves { pass P0 { CullMode = NONE; VertexShader = compile vs_3_0 VS(); PixelShader = compile ps_3_0 PS(); } }
