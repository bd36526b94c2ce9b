float4x4 gWVP : WORLDVIEWPROJECTION; float4x4 gWorld : WORLD; float3 gEye : VIEWPOSITION;
float4 gLight[6] : OmniLightPosition;
float gHeight = 0.04, gBias = -0.02; float gGloss : SpecularPower = 32;
texture cmap : DIFFUSEMAP; texture nmap : NORMALMAP;
sampler2D Colour = sampler_state { Texture = <cmap>; }; sampler2D Bump = sampler_state { Texture = <nmap>; };
struct a2v { float4 pos : POSITION; float3 normal : NORMAL; float3 tangent : TANGENT; float3 binormal : BINORMAL; float2 uv : TEXCOORD0; };
struct v2f { float4 pos : POSITION; float2 uv : TEXCOORD0; float3 view : TEXCOORD1; float3 light : TEXCOORD2; };
v2f vs(a2v v) {
  v2f o; float3x3 tbn = float3x3(v.tangent, v.binormal, v.normal);
  float3x3 w = (float3x3)gWorld; float3x3 t2w = mul(tbn, w);
  float3 wp = mul(v.pos, gWorld);
  o.pos = mul(v.pos, gWVP); o.uv = v.uv;
  o.view = mul(t2w, gEye - wp); o.light = mul(t2w, gLight[0].xyz - wp);
  return o; }
float4 simple(v2f i) : COLOR {
  float3 V = normalize(i.view), L = normalize(i.light);
  float h = tex2D(Bump, i.uv).a * gHeight + gBias;
  float2 uv = i.uv + h * V.xy;
  float3 N = normalize(tex2D(Bump, uv).xyz * 2 - 1), H = normalize(L + V);
  float4 l = lit(dot(N, L), dot(N, H), gGloss);
  float4 c = tex2D(Colour, uv);
  return float4(c.rgb * l.y + l.z * c.a, 1); }
float4 steep(v2f i) : COLOR {
  float3 V = normalize(i.view); int steps = (int)lerp(32, 8, abs(V.z));
  float2 d = -V.xy / V.z * gHeight / steps; float2 dx = ddx(i.uv), dy = ddy(i.uv);
  float2 uv = i.uv; float height = 1, sample = tex2Dgrad(Bump, uv, dx, dy).a;
  [loop] while (sample < height) { height -= 1.0 / steps; uv += d; sample = tex2Dgrad(Bump, uv, dx, dy).a; }
  float3 N = tex2Dgrad(Bump, uv, dx, dy).xyz * 2 - 1;
  return tex2Dgrad(Colour, uv, dx, dy) * saturate(dot(normalize(N), normalize(i.light))); }
technique Simple { pass { VertexShader = compile vs_2_0 vs(); PixelShader = compile ps_2_0 simple(); } }
technique Steep { pass { VertexShader = compile vs_3_0 vs(); PixelShader = compile ps_3_0 steep(); } }
