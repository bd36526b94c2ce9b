texture Scene : SCREENCOPY; texture Q1 : SCREENQUARTERBUFFER1; texture Q2 : SCREENQUARTERBUFFER2;
float4 inv : InvViewPortDim;
sampler2D sScene = sampler_state { Texture = <Scene>; AddressU = Clamp; AddressV = Clamp; MinFilter = Linear; };
sampler2D sQ1 = sampler_state { Texture = <Q1>; AddressU = Clamp; AddressV = Clamp; }; sampler2D sQ2 = sampler_state { Texture = <Q2>; };
static const int N = 7;
static const float weight[N] = { 0.05, 0.1, 0.2, 0.3, 0.2, 0.1, 0.05 };
static const float2 taps[4] = { {-1, -1}, {1, -1}, {-1, 1}, {1, 1} };
struct Quad { float4 p : POSITION; float2 t : TEXCOORD0; };
Quad FullVS(float4 p : POSITION, float2 t : TEXCOORD0) { Quad q = { float4(p.xy, 0, 1), t + inv.xy * 0.5 }; return q; }
half4 Bright(Quad i) : COLOR { half4 c = 0; for (int k = 0; k < 4; k++) c += tex2D(sScene, i.t + taps[k] * inv.xy); c *= 0.25; half lum = dot(c.rgb, half3(0.299, 0.587, 0.114)); return c * smoothstep(0.6, 0.9, lum); }
half4 Blur(Quad i, uniform sampler2D s, uniform float2 dir) : COLOR { half4 c = 0; for (int k = 0; k < N; k++) c += weight[k] * tex2D(s, i.t + dir * inv.xy * 4 * (k - N / 2)); return c; }
half4 Combine(Quad i) : COLOR { half4 a = tex2D(sScene, i.t), b = tex2D(sQ1, i.t); half3 grey = dot(a.rgb, 1.0 / 3); a.rgb = lerp(grey, a.rgb, 1.1); return 1 - (1 - saturate(a)) * (1 - saturate(b)); }
technique Bloom {
 pass A < string RenderTarget = "ScreenQuarterBuffer1"; > { VertexShader = compile vs_2_0 FullVS(); PixelShader = compile ps_2_0 Bright(); }
 pass B < string RenderTarget = "ScreenQuarterBuffer2"; > { VertexShader = compile vs_2_0 FullVS(); PixelShader = compile ps_2_0 Blur(sQ1, float2(1, 0)); }
 pass C < string RenderTarget = "ScreenQuarterBuffer1"; > { VertexShader = compile vs_2_0 FullVS(); PixelShader = compile ps_2_0 Blur(sQ2, float2(0, 1)); }
 pass D < string RenderTarget = "Initial"; > { VertexShader = compile vs_2_0 FullVS(); PixelShader = compile ps_2_0 Combine(); } }
