// A wall without a picture.
float4x4 wvp : WORLDVIEWPROJECTION;
float2 bricks = {4, 8};
float joint = 0.08;

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float2 uvOut : TEXCOORD0)
{
    clip = mul(position, wvp);
    uvOut = uv * bricks;
}

float4 PS(float2 uv : TEXCOORD0) : COLOR
{
    float row = floor(uv.y);
    if (fmod(row, 2) >= 1)
        uv.x += 0.5;
    float2 part = frac(uv);
    bool isJoint = any(part < joint) || any(part > 1 - joint);
    float shade = 0.8 + 0.2 * frac(row * 0.37 + floor(uv.x) * 0.71);
    return isJoint ? float4(0.75, 0.73, 0.7, 1) : float4(float3(0.62, 0.25, 0.18) * shade, 1);
}

technique Bricks { pass P0 { VertexShader = compile vs_1_1 VS(); PixelShader = compile ps_2_0 PS(); } }
