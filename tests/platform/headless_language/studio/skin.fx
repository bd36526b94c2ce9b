#define MAX_BONES 26
float4x3 bones[MAX_BONES] : WORLDMATRIXARRAY;
float4x4 viewProj : VIEWPROJECTION;
int weights : NUMBLENDWEIGHTS = 2;
float4 diffuse : DiffuseMaterial = {1, 1, 1, 1}, ambient : AmbientColor;
float4 dirs[2] : DirectionalLightDirection, cols[2] : DirectionalLightDiffCol;
texture base : DIFFUSEMAP;
sampler Base = sampler_state { texture = <base>; MinFilter = ANISOTROPIC; MaxAnisotropy = 4; };
struct Vin { float4 pos : POSITION; float4 weights : BLENDWEIGHT; float4 indices : BLENDINDICES; float3 n : NORMAL; float2 uv : TEXCOORD0; };
struct Vout { float4 pos : POSITION; float4 diff : COLOR0; float2 uv : TEXCOORD0; };
Vout main(Vin i, uniform int NumBones)
{
    Vout o;
    float3 pos = 0.0f, n = 0.0f;
    float last = 0;
    int4 indexVector = D3DCOLORtoUBYTE4(i.indices);
    float w[4] = (float[4])i.weights;
    int index[4] = (int[4])indexVector;
    for (int b = 0; b < NumBones - 1; b++) {
        last += w[b];
        pos += mul(i.pos, bones[index[b]]) * w[b];
        n += mul(i.n, (float3x3)bones[index[b]]) * w[b];
    }
    last = 1.0f - last;
    pos += mul(i.pos, bones[index[NumBones - 1]]) * last;
    n += mul(i.n, (float3x3)bones[index[NumBones - 1]]) * last;
    o.pos = mul(float4(pos.xyz, 1.0f), viewProj);
    n = normalize(n);
    o.diff.xyz = ambient.xyz;
    [unroll] for (int l = 0; l < 2; ++l) o.diff.xyz += max(0, dot(n, -dirs[l].xyz)) * cols[l].rgb * diffuse.xyz;
    o.diff.w = 1;
    o.uv = i.uv.xy;
    return o;
}
float4 ps(Vout i) : COLOR0 { return tex2D(Base, i.uv) * i.diff; }
vertexshader list[4] = { compile vs_1_1 main(1), compile vs_1_1 main(2), compile vs_2_0 main(3), compile vs_2_0 main(4) };
technique t { pass { VertexShader = (list[weights]); PixelShader = compile ps_2_0 ps(); } }
