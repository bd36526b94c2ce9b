// A mesh that follows up to 16 bones, four weights for each vertex.
#define BONES 16

float4x4 viewProjection : VIEWPROJECTION;
float4x3 bones[BONES];
float3 light = {0.4, 0.7, -0.6};
texture diffuseMap;
sampler2D diffuse = sampler_state { Texture = <diffuseMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

struct Skinned {
    float3 position;
    float3 normal;
};

Skinned Blend(float4 position, float3 normal, float3 weights, float4 indices)
{
    Skinned result = (Skinned)0;
    float last = 1 - weights.x - weights.y - weights.z;
    float all[4] = {weights.x, weights.y, weights.z, last};
    for (int i = 0; i < 4; ++i) {
        const float4x3 bone = bones[(int)indices[i]];
        result.position += mul(position, bone) * all[i];
        result.normal += mul(normal, (float3x3)bone) * all[i];
    }
    return result;
}

void VS(float4 position : POSITION, float3 normal : NORMAL, float2 uv : TEXCOORD0,
        float3 weights : BLENDWEIGHT, float4 indices : BLENDINDICES,
        out float4 clip : POSITION, out float2 uvOut : TEXCOORD0, out float shade : TEXCOORD1)
{
    Skinned skinned = Blend(position, normal, weights, indices);
    clip = mul(float4(skinned.position, 1), viewProjection);
    uvOut = uv;
    shade = saturate(dot(normalize(skinned.normal), normalize(light))) * 0.75 + 0.25;
}

float4 PS(float2 uv : TEXCOORD0, float shade : TEXCOORD1) : COLOR
{
    return tex2D(diffuse, uv) * float4(shade.xxx, 1);
}

technique Skin {
    pass P0 {
        VertexShader = compile vs_2_0 VS();
        PixelShader = compile ps_2_0 PS();
    }
}
