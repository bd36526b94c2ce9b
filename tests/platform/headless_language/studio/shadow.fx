float4x4 WorldViewProj : WORLDVIEWPROJECTION, World : WORLD, LightViewProj; float4 LightPos = float4(10, 20, 5, 1);
const float SHADOW_EPSILON = 0.00005f; static const float SMAP_SIZE = 512.0f;
texture ShadowMap : SCREENBUFFER1; sampler ShadowS = sampler_state { Texture = (ShadowMap); MinFilter = Point; MagFilter = Point; AddressU = Border; BorderColor = 0xFFFFFFFF; };
void VertShadow(float4 Pos : POSITION, out float4 oPos : POSITION, out float2 Depth : TEXCOORD0) { oPos = mul(Pos, WorldViewProj); Depth.xy = oPos.zw; }
void PixShadow(float2 Depth : TEXCOORD0, out float4 Color : COLOR) { Color = Depth.x / Depth.y; }
void VertScene(float4 iPos : POSITION, float3 iNormal : NORMAL, out float4 oPos : POSITION, out float4 vPos : TEXCOORD1, out float3 vN : TEXCOORD2, out float4 vL : TEXCOORD3) {
  oPos = mul(iPos, WorldViewProj); vPos = mul(iPos, World); vN = mul(iNormal, (float3x3)World); vL = mul(vPos, LightViewProj); }
float4 PixScene(float4 vPos : TEXCOORD1, float3 vN : TEXCOORD2, float4 vL : TEXCOORD3) : COLOR {
  float4 Diffuse; float3 toL = normalize(LightPos.xyz - vPos.xyz);
  if (dot(vN, toL) > 0) {
    float2 t = 0.5 * vL.xy / vL.w + float2(0.5, 0.5); t.y = 1.0f - t.y;
    float2 texelpos = SMAP_SIZE * t; float2 lerps = frac(texelpos);
    float sourcevals[4];
    sourcevals[0] = (tex2D(ShadowS, t) + SHADOW_EPSILON < vL.z / vL.w) ? 0.0f : 1.0f;
    sourcevals[1] = (tex2D(ShadowS, t + float2(1.0 / SMAP_SIZE, 0)) + SHADOW_EPSILON < vL.z / vL.w) ? 0.0f : 1.0f;
    sourcevals[2] = (tex2D(ShadowS, t + float2(0, 1.0 / SMAP_SIZE)) + SHADOW_EPSILON < vL.z / vL.w) ? 0.0f : 1.0f;
    sourcevals[3] = (tex2D(ShadowS, t + float2(1.0 / SMAP_SIZE, 1.0 / SMAP_SIZE)) + SHADOW_EPSILON < vL.z / vL.w) ? 0.0f : 1.0f;
    float LightAmount = lerp(lerp(sourcevals[0], sourcevals[1], lerps.x), lerp(sourcevals[2], sourcevals[3], lerps.x), lerps.y);
    Diffuse = (saturate(dot(toL, normalize(vN))) * LightAmount * 0.8 + 0.2);
  } else { Diffuse = 0.2; }
  return Diffuse; }
technique RenderShadow { pass p0 < string RenderTarget = "ScreenBuffer1"; > { VertexShader = compile vs_1_1 VertShadow(); PixelShader = compile ps_2_0 PixShadow(); }
 pass p1 < string RenderTarget = "Initial"; > { VertexShader = compile vs_1_1 VertScene(); PixelShader = compile ps_2_0 PixScene(); } }
