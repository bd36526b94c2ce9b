float4x4 wvp : WORLDVIEWPROJECTION; float4 ambient : AmbientColor; float4 sun[2] : DirectionalLightDirection; float2 fog : FOGSTARTEND; float4x4 wv : WORLDVIEW;
texture t0; texture t1; texture t2; texture t3; texture mask;
sampler layer[4] = { sampler_state { Texture = <t0>; }, sampler_state { Texture = <t1>; }, sampler_state { Texture = <t2>; }, sampler_state { Texture = <t3>; } };
sampler maskS = sampler_state { Texture = <mask>; };
float4 tiling = {8, 16, 4, 32};
struct O { float4 p : POSITION; float4 c : COLOR0; float f : FOG; float2 t : TEXCOORD0; };
O vs(float4 p : POSITION, float3 n : NORMAL, float2 t : TEXCOORD0) { O o; o.p = mul(p, wvp); o.c = ambient + saturate(-dot(n, sun[0].xyz)); float d = mul(p, wv).z; o.f = saturate((fog.y - d) / (fog.y - fog.x)); o.t = t; return o; }
float4 ps(float4 c : COLOR0, float2 t : TEXCOORD0) : COLOR { float4 m = tex2D(maskS, t); m /= dot(m, 1); float4 r = 0; [unroll] for (int i = 0; i < 4; i++) r += tex2D(layer[i], t * tiling[i]) * m[i]; return r * c; }
technique t { pass { VertexShader = compile vs_1_1 vs(); PixelShader = compile ps_2_0 ps(); } }
