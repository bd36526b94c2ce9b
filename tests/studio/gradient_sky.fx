// A sky of four colours by height, with a sun.
float4x4 wvp : WORLDVIEWPROJECTION;
float4 heights = {0, 0.3, 0.6, 1};
float3 colours[4] = {{0.9, 0.6, 0.4}, {0.7, 0.65, 0.7}, {0.35, 0.5, 0.8}, {0.1, 0.2, 0.5}};
float3 sun = {0.3, 0.4, 0.87};

float3 Sky(float height)
{
    float3 result = colours[0];
    result = lerp(result, colours[1], smoothstep(heights.x, heights.y, height));
    result = lerp(result, colours[2], smoothstep(heights.y, heights.z, height));
    result = lerp(result, colours[3], smoothstep(heights.z, heights.w, height));
    return result;
}

void VS(float4 position : POSITION, out float4 clip : POSITION, out float3 way : TEXCOORD0)
{
    clip = mul(position, wvp);
    way = position.xyz;
}

float4 PS(float3 way : TEXCOORD0) : COLOR
{
    float3 to = normalize(way);
    float disc = step(0.95, dot(to, normalize(sun)));
    return float4(max(Sky(to.y * 0.5 + 0.5), disc.xxx * float3(1, 0.95, 0.7)), 1);
}

technique Sky { pass P0 { VertexShader = compile vs_1_1 VS(); PixelShader = compile ps_2_a PS(); } }
