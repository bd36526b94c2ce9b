float4x4 wvp; float3 light = {0, 0, 1}; texture wall;
sampler2D s = sampler_state { Texture = <wall>; };
struct In { float4 p : POSITION; float4 c : COLOR0; };
struct Out { float4 p : POSITION; float4 c : COLOR0; float2 t : TEXCOORD0; };
Out v(In i) { Out o; o.p = i.p + mul(i.p, wvp); o.c = saturate(dot(i.c.xyz, light)); o.t = i.p.xy; return o; }
float4 p(Out i) : COLOR { float4 r = tex2D(s, i.t); if (r.a < 0.5) r.rgb *= 0.5; clip(r.a - 0.1); return r * i.c; }
