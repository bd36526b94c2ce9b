// A coarse picture, and a fine one that fades with the distance.
float4x4 wvp : WORLDVIEWPROJECTION;
float detailTiles = 6;
float2 fade = {2, 4};
texture diffuseMap, maskMap;
sampler coarse = sampler_state { Texture = <diffuseMap>; MinFilter = LINEAR; MagFilter = LINEAR; };
sampler fine = sampler_state { Texture = <maskMap>; MinFilter = LINEAR; MagFilter = LINEAR; };

void VS(float4 position : POSITION, float2 uv : TEXCOORD0, out float4 clip : POSITION,
        out float4 uvs : TEXCOORD0, out float near : TEXCOORD1)
{
    clip = mul(position, wvp);
    uvs = float4(uv, uv * detailTiles);
    near = saturate((fade.y - clip.w) / (fade.y - fade.x));
}

float4 PS(float4 uvs : TEXCOORD0, float near : TEXCOORD1) : COLOR
{
    float detail = tex2D(fine, uvs.wz).g * 2;
    return tex2D(coarse, uvs.xy) * lerp(1, detail, near);
}

technique Detail { pass P0 { VertexShader = compile vs_1_1 VS(); PixelShader = compile ps_2_0 PS(); } }
