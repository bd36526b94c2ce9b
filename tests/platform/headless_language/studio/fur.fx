float4x4 wvp : WORLDVIEWPROJECTION; float time : GAMETIME; float lengthOfFur = 0.3; float3 gravity = float3(0, -1, 0);
texture fur : DIFFUSEMAP; sampler2D Fur = sampler_state { Texture = <fur>; };
struct VO { float4 p : POSITION; float2 t : TEXCOORD0; float layer : TEXCOORD1; };
VO shell(float4 p : POSITION, float3 n : NORMAL, float2 t : TEXCOORD0, uniform int k, uniform float shells = 8.0)
{ VO o; float h = k / shells; float3 d = gravity * pow(h, 3) * 0.1 + float3(sin(time), 0, cos(time)) * 0.02 * h; float3 q = p.xyz + n * lengthOfFur * h + d; o.p = mul(float4(q, p.w), wvp); o.t = t * 4; o.layer = h; return o; }
float4 hair(VO i) : COLOR { float4 c = tex2D(Fur, i.t); clip(c.a - i.layer); c.rgb *= lerp(0.4, 1, i.layer); c.a = 1 - i.layer * i.layer; return c; }
#define SHELL(k) pass { AlphaBlendEnable = TRUE; SrcBlend = SRCALPHA; DestBlend = INVSRCALPHA; VertexShader = compile vs_2_0 shell(k); PixelShader = compile ps_2_0 hair(); }
technique t { SHELL(0) SHELL(1) SHELL(2) SHELL(3) SHELL(4) SHELL(5) SHELL(6) SHELL(7) }
