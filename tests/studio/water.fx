// Two moving layers of waves over a sky.
float4x4 wvp : WORLDVIEWPROJECTION;
float3 eye = {0, 1, -3};
float time : TIME = 1.25;
float4 deep = {0.02, 0.12, 0.2, 1};
float4 shallow = {0.1, 0.5, 0.55, 1};
texture normalMap;
texture environmentMap;
sampler waves = sampler_state { Texture = <normalMap>; MinFilter = LINEAR; MagFilter = LINEAR; };
samplerCUBE sky = sampler_state { Texture = <environmentMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

struct VertexOut {
    float4 clip : POSITION;
    float4 uvs : TEXCOORD0;
    float3 view : TEXCOORD1;
};

VertexOut VS(float3 position : POSITION, float2 uv : TEXCOORD)
{
    VertexOut o;
    o.clip = mul(float4(position, 1), wvp);
    o.uvs.xy = uv * 2 + time * float2(0.05, 0.02);
    o.uvs.zw = uv.yx * 3 - time * float2(0.03, 0.04);
    o.view = position - eye;
    return o;
}

float4 PS(VertexOut i) : COLOR
{
    float3 a = tex2D(waves, i.uvs.xy).xyz;
    float3 b = tex2D(waves, i.uvs.zw).xyz;
    float3 normal = normalize((a + b - 1) * float3(0.4, 0.4, 1));
    float3 view = normalize(i.view);
    float3 mirrored = reflect(view, normal.xzy);
    float facing = 1 - saturate(dot(-view, normal.xzy));
    float fresnel = 0.02 + 0.98 * pow(facing, 5);
    return lerp(lerp(deep, shallow, normal.z), texCUBE(sky, mirrored), fresnel);
}

technique Water {
    pass P0 {
        VertexShader = compile vs_2_0 VS();
        PixelShader = compile ps_2_0 PS();
    }
}
