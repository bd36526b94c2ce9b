// A flag: three waves move the vertices, and their slopes give the light.
float4x4 wvp : WORLDVIEWPROJECTION;
float time : TIME = 0.7;
float4 waves[3] = {
    {1.0, 0.3, 4.0, 0.10}, // way x, way y, frequency, height
    {0.5, 1.0, 7.0, 0.05},
    {-0.8, 0.6, 11.0, 0.02},
};
float4 cloth = {0.8, 0.2, 0.25, 1};

void VS(float4 position : POSITION, out float4 clip : POSITION, out float4 colour : COLOR)
{
    float height = 0;
    float2 slope = 0;
    for (int i = 0; i < 3; ++i) {
        float s, c;
        sincos(dot(waves[i].xy, position.xy) * waves[i].z + time * (i + 1), s, c);
        height += s * waves[i].w;
        slope += c * waves[i].w * waves[i].z * waves[i].xy;
    }
    position.z += height;
    clip = mul(position, wvp);
    float3 normal = normalize(float3(slope, -1));
    colour = cloth * (0.3 + 0.7 * saturate(dot(normal, float3(0.48, 0.6, -0.64))));
    colour.a = 1;
}

technique Flag {
    pass P0 {
        VertexShader = compile vs_2_0 VS();
        PixelShader = NULL;
        ColorOp[0] = SELECTARG1;
        ColorArg1[0] = DIFFUSE;
        AlphaOp[0] = SELECTARG1;
        AlphaArg1[0] = DIFFUSE;
        ColorOp[1] = DISABLE;
        CullMode = NONE;
    }
}
