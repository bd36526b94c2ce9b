// Light around the edge of a body that the eye sees against it.
float4x4 wvp : WORLDVIEWPROJECTION;
float3 eye = {0, 0, -3};
float4 body = {0.05, 0.07, 0.15, 1};
float4 rim = {0.3, 0.8, 1, 1};
int sharpness = 3;

struct Out { float4 clip : POSITION; float4 colour : COLOR0; };

float Power(float base, int exponent)
{
    float result = 1;
    for (int i = 0; i < exponent && i < 8; ++i)
        result *= base;
    return result;
}

Out VS(float4 position : POSITION, float3 normal : NORMAL)
{
    Out o = (Out)0;
    o.clip = mul(position, wvp);
    float facing = saturate(dot(normal, normalize(eye - position.xyz)));
    o.colour = body + rim * Power(1 - facing, sharpness);
    return o;
}

float4 PS(float4 colour : COLOR0) : COLOR { return colour; }

technique Rim { pass P0 { VertexShader = compile vs_2_a VS(); PixelShader = compile ps_2_0 PS(); } }
